// The effect as a whole, and every other property of the service.

#include <cstring>

#include "client/changes.h"
#include "client/command.h"
#include "client/equaliser.h"
#include "client/parse.h"

namespace {

ExitStatus print(Session& session, const Choice& wanted) {
    ExitStatus status = kDone;
    const std::vector<Reading> readings = readAll(session, wanted, &status);
    if (session.options.json) {
        Json json;
        json.open('{');
        addToJson(json, readings);
        json.close().print();
        return status;
    }
    for (const Reading& reading : readings) printValue(*reading.property, reading.value);
    return status;
}

ExitStatus status(Session& session, const Arguments&) {
    if (session.options.json) return print(session, [](const Property&) { return true; });
    ExitStatus status = kDone;
    for (const Reading& reading : readAll(
                 session, [](const Property&) { return true; }, &status)) {
        if (reading.property->kind == Property::kGains) {
            printGains(session, reading.value);
        } else {
            printValue(*reading.property, reading.value);
        }
    }
    return status;
}

ExitStatus get(Session& session, const Arguments& given) {
    for (const std::string& key : given) {
        if (findProperty(key) == nullptr) {
            return reportUsage("get", key, "one of: " + keys(false));
        }
    }
    if (given.size() == 1) return show(session, *findProperty(given[0]));
    return print(session, [&given](const Property& property) {
        if (given.empty()) return true;
        for (const std::string& key : given) {
            if (key == property.key) return true;
        }
        return false;
    });
}

// KEY=VALUE; several numbers stand between commas.
ExitStatus parseAssignment(const std::string& text, Change* change) {
    const size_t equals = text.find('=');
    const Property* property = findProperty(text.substr(0, equals));
    if (equals == std::string::npos || property == nullptr || property->set == nullptr) {
        return reportUsage("set", text, "KEY=VALUE, where KEY is one of: " + keys(true));
    }
    std::string values = text.substr(equals + 1);
    for (char& c : values) {
        if (c == ',') c = ' ';
    }
    change->property = property;
    return parseValue(*property, splitWords(values), &change->value);
}

ExitStatus set(Session& session, const Arguments& arguments) {
    std::vector<Change> changes(arguments.size());
    for (size_t i = 0; i < arguments.size(); ++i) {
        const ExitStatus status = parseAssignment(arguments[i], &changes[i]);
        if (status != kDone) return status;
    }
    const ExitStatus status = applyChanges(session, changes, true);
    if (status != kDone) return status;
    return print(session, [&changes](const Property& property) {
        for (const Change& change : changes) {
            if (change.property == &property) return true;
        }
        return false;
    });
}

ExitStatus effect(Session& session, const Arguments& arguments) {
    const Property& effect = property("effect");
    const ExitStatus status = arguments.empty() ? kDone : switchTo(session, effect, arguments[0]);
    return status == kDone ? show(session, effect) : status;
}

ExitStatus enable(Session& session, const Arguments&) {
    return setAndShow(session, property("effect"), {"on"});
}

ExitStatus disable(Session& session, const Arguments&) {
    return setAndShow(session, property("effect"), {"off"});
}

// A command that shows or sets the property of its own name.
template <const char* kKey>
ExitStatus showOrSet(Session& session, const Arguments& words) {
    return words.empty() ? show(session, property(kKey))
                         : setAndShow(session, property(kKey), words);
}

constexpr char kStereo[] = "stereo";
constexpr char kRoute[] = "route";
constexpr char kLevels[] = "levels";

ExitStatus showGroup(Session& session, const std::string& group) {
    return print(session, [&group](const Property& property) {
        return strncmp(property.key, group.c_str(), group.size()) == 0;
    });
}

ExitStatus tuning(Session& session, const Arguments& arguments) {
    int32_t route = 0;
    if (!parseKnownRoute(arguments[0], &route)) {
        return reportUsage("tuning", arguments[0], "a route: speaker, lineout or bluetooth");
    }
    const Property& chosen = property((std::string("tuning.") + kRouteNames[route]).c_str());
    return arguments.size() == 1 ? show(session, chosen)
                                 : setAndShow(session, chosen, {arguments[1]});
}

ExitStatus mask(Session& session, const Arguments& arguments) {
    if (arguments.empty()) return showGroup(session, "mask.");
    int32_t route = 0;
    if (!parseRoute(arguments[0], &route)) {
        return reportUsage("mask", arguments[0], "a route: speaker, lineout or bluetooth");
    }
    if (!parseKnownRoute(arguments[0], &route)) return reportResult("mask", kZylKwoBadArgument);
    return show(session, property((std::string("mask.") + kRouteNames[route]).c_str()));
}

ExitStatus version(Session& session, const Arguments&) {
    return print(session, [](const Property& property) {
        return property.key == std::string("version") || property.key == std::string("platform");
    });
}

ExitStatus reload(Session& session, const Arguments& arguments) {
    bool on = false;
    if (!arguments.empty() && !parseSwitch(arguments[0], &on))
        return reportUsage("reload", arguments[0], "on or off");
    const ExitStatus status = reportResult("reload", session.service().setReloadFlag(on));
    if (status == kDone) printf("reloaded       forced mode %s\n", on ? "on" : "off");
    return status;
}

constexpr char kStatusDetails[] =
        "Shows everything at a glance: the settings generation, the effect, its tunings or the\n"
        "identifiers of its tuning data, the equaliser, what clients share, and versions.\n";
constexpr char kGetDetails[] = "Without a KEY, shows all.\n";
constexpr char kSetDetails[] =
        "Sets several properties, all or none: all are checked before the first is sent, and when\n"
        "the service refuses one, those before it are taken back. Several numbers stand between\n"
        "commas:\n"
        "    kwoctl set stereo=2 tuning.lineout=1 geq=on gains=0dB,0dB,+3dB,0dB,0dB,0dB,0dB,0dB,"
        "-1.5dB,0dB\n";
constexpr char kReloadDetails[] =
        "While forced mode is on, lineout and bluetooth have stereo mode 3 and cleared effect\n"
        "parameters, whatever the settings say. The service does not tell whether it is on.\n";

}  // namespace

const std::vector<Command> kSettingCommands = {
        {"status", "", "show everything at a glance", kStatusDetails, 0, 0, Command::kService,
         "--json", status},
        {"get", "[KEY...]", "show properties by their keys", kGetDetails, 0, kAnyNumber,
         Command::kService, "--json", get},
        {"set", "KEY=VALUE...", "set several properties, all or none", kSetDetails, 1, kAnyNumber,
         Command::kService, "--json", set},
        {"effect", "[on|off|toggle]", "show or switch the effect", "", 0, 1, Command::kService,
         "--json", effect},
        {"enable", "", "switch the effect on", "", 0, 0, Command::kService, "--json", enable},
        {"disable", "", "switch the effect off", "", 0, 0, Command::kService, "--json", disable},
        {"stereo", "[1|2|3]", "show or set the stereo mode", "", 0, 1, Command::kService, "--json",
         showOrSet<kStereo>},
        {"tuning", "ROUTE [N]", "show or pick a route's tuning",
         "N is the number of a tuning file. Only on devices with tuning numbers.\n", 1, 2,
         Command::kService, "--json", tuning},
        {"route", "[ROUTE]", "show or declare the active route",
         "Clients share this value; the service does not act on it.\n", 0, 1, Command::kService,
         "--json", showOrSet<kRoute>},
        {"mask", "[ROUTE]", "show the output devices of each route", "", 0, 1, Command::kService,
         "--json", mask},
        {"levels", "[LEVEL...]", "show or set the ten shared levels",
         "Clients share these values; the service does not act on them.\n", 0, kDbLevelCount,
         Command::kService, "--json", showOrSet<kLevels>},
        {"version", "", "show all versions", "", 0, 0, Command::kService, "--json", version},
        {"reload", "[on|off]", "rebuild all blocks, with or without forced mode", kReloadDetails, 0,
         1, Command::kService, "", reload},
};
