// A page that shows everything: one HTML file that needs neither network nor other files.

#ifndef ZYL_CLIENT_REPORT_PAGE_H
#define ZYL_CLIENT_REPORT_PAGE_H

#include <string>

#include "client/command.h"

// Both complain themselves.
ExitStatus makeReportPage(Session& session, std::string* page);
// The JSON that the page's script draws from.
ExitStatus makeReportData(Session& session, std::string* data);

#endif  // ZYL_CLIENT_REPORT_PAGE_H
