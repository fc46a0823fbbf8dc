// A page that shows everything: one HTML file that needs neither network nor other files. What
// matters stands in it as text; its script draws the curve and the bytes.

#ifndef ZYL_CLIENT_REPORT_PAGE_H
#define ZYL_CLIENT_REPORT_PAGE_H

#include <string>
#include <vector>

#include "client/expected.h"
#include "client/library/state.h"
#include "client/session.h"

struct BlockReport {
    std::string name;  // its route's
    Outcome outcome;   // whether the block could be read and compared
    Bytes found;
    Verdict verdict;
};

struct Report {
    State state;
    std::vector<BlockReport> blocks;  // one a route
};

Outcome makeReportPage(Session& session, std::string* page);

// What the page's script draws from, as JSON.
std::string makeReportData(const Session& session, const Report& report);

#endif  // ZYL_CLIENT_REPORT_PAGE_H
