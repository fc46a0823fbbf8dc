// The effect as a whole, and every other property of the service.

#include "client/change.h"
#include "client/command.h"
#include "client/console.h"
#include "client/library/parse.h"
#include "client/library/tunings.h"

namespace {

Outcome statusOf(Session& session, const Arguments&) {
    State state;
    Outcome outcome = readState(session, everything, &state);
    printOverview(session, state, {});
    return outcome;
}

Outcome get(Session& session, const Arguments& given) {
    if (given.empty()) return show(session, everything);
    std::vector<const Property*> wanted;
    for (const std::string& key : given) {
        const Property* const found = findProperty(lowerCase(key));
        if (found == nullptr) return wrongUsage("get", key, "one of: " + joinWords(keys(false)));
        wanted.push_back(found);
    }
    if (wanted.size() == 1) return show(session, *wanted[0]);
    State state;
    Outcome outcome;
    // In the order of the table, and the bands by themselves behind it.
    const auto read = [&](const Property& property) {
        for (const Property* one : wanted) {
            Value value;
            if (one != &property) continue;
            const int32_t result = getProperty(session.service(), *one, &value);
            if (result == kZylKwoOk) state.push_back({one, value});
            if (result != kZylKwoNotAvailable && outcome.ok()) outcome = resultOf(one->key, result);
            return;
        }
    };
    for (const Property& property : properties()) read(property);
    for (int32_t band = 0; band < kGEQBandCount; ++band) read(bandProperty(band));
    printState(session, state);
    return outcome;
}

Outcome set(Session& session, const Arguments& arguments) {
    Wanted wanted;
    Outcome outcome = wantSet(arguments, &wanted);
    if (outcome.ok()) outcome = change(session, wanted, nullptr);
    if (!outcome.ok() || session.options.dryRun) return outcome;
    Arguments keys;
    for (const Change& change : wanted.changes) keys.push_back(change.property->key);
    return get(session, keys);
}

// Sets the property to the words and shows what then holds.
Outcome setAndShow(Session& session, const Property& property, const Arguments& words) {
    Value value;
    Outcome outcome = parseValue(property, words, &value);
    if (outcome.ok()) outcome = changeOne(session, property, value);
    return outcome.ok() ? show(session, property) : outcome;
}

Outcome effect(Session& session, const Arguments& arguments) {
    const Property& effect = property("effect");
    if (arguments.empty()) return show(session, effect);
    Value value;
    Outcome outcome = switchedValue(session, effect, arguments[0], &value);
    if (outcome.ok()) outcome = changeOne(session, effect, value);
    return outcome.ok() ? show(session, effect) : outcome;
}

Outcome enable(Session& session, const Arguments&) {
    return setAndShow(session, property("effect"), {"on"});
}

Outcome disable(Session& session, const Arguments&) {
    return setAndShow(session, property("effect"), {"off"});
}

// A command that shows or sets the property of its own name.
template <const char* kKey>
Outcome showOrSet(Session& session, const Arguments& words) {
    return words.empty() ? show(session, property(kKey))
                         : setAndShow(session, property(kKey), words);
}

constexpr char kStereo[] = "stereo";
constexpr char kRoute[] = "route";
constexpr char kLevels[] = "levels";
constexpr char kAboutRoutes[] = "a route: speaker, lineout or bluetooth";

Outcome tuning(Session& session, const Arguments& arguments) {
    int32_t route = 0;
    if (!parseKnownRoute(arguments[0], &route)) {
        return wrongUsage("tuning", arguments[0], kAboutRoutes);
    }
    const Property& chosen = property(std::string("tuning.") + kRouteNames[route]);
    return arguments.size() == 1 ? show(session, chosen)
                                 : setAndShow(session, chosen, {arguments[1]});
}

Outcome mask(Session& session, const Arguments& arguments) {
    if (arguments.empty()) {
        return show(session,
                    [](const Property& property) { return property.kind == Property::kMask; });
    }
    int32_t route = 0;
    if (!parseKnownRoute(arguments[0], &route)) {
        return wrongUsage("mask", arguments[0], kAboutRoutes);
    }
    return show(session, property(std::string("mask.") + kRouteNames[route]));
}

Outcome version(Session& session, const Arguments&) {
    return show(session, [](const Property& property) {
        return property.key == "version" || property.key == "platform";
    });
}

Outcome reload(Session& session, const Arguments& arguments) {
    bool on = false;
    if (!arguments.empty() && !parseSwitch(arguments[0], &on)) {
        return wrongUsage("reload", arguments[0], "on or off");
    }
    Outcome outcome = resultOf("reload", session.service().setReloadFlag(on));
    if (outcome.ok()) outcome = checkDsp(session);
    if (!outcome.ok()) return outcome;
    if (session.options.json) {
        Json json;
        print(json.open('{').name("reload").boolean(on).close());
    } else {
        printf("reloaded       forced mode %s\n", on ? "on" : "off");
    }
    return done();
}

constexpr char kStatusDetails[] =
        "Shows everything at a glance: the settings generation, the effect, its tunings or the\n"
        "identifiers of its tuning data, the equaliser, what clients share, and versions.\n";
constexpr char kSetDetails[] =
        "Sets several properties, in any order, all or none: all are checked before the first is\n"
        "sent, and when the service or the DSP refuses one, the others are taken back. Several\n"
        "numbers stand between commas:\n"
        "    kwoctl set stereo=2 tuning.lineout=1 geq=on gains.3=+1.5dB\n"
        "--dry-run shows the steps and sends nothing.\n";
constexpr char kCheckDetails[] =
        "Afterwards it reads the DSP's blocks, as the service says done also when the DSP did not\n"
        "follow. Each such look costs the service a block's worth of its address space until it\n"
        "restarts; a script that switches often does without, by --no-check.\n";
constexpr char kReloadDetails[] =
        "While forced mode is on, lineout and bluetooth have stereo mode 3 and cleared effect\n"
        "parameters, whatever the settings say. The service does not say whether it is on.\n";
constexpr char kSharedDetails[] =
        "Clients share this; the service does not act on it, and forgets it when it restarts.\n";

}  // namespace

const CommandTable& settingCommands() {
    static const CommandTable table = {
            command("status", "", "show everything at a glance", statusOf)
                    .explained(kStatusDetails),
            command("get", "[KEY...]", "show properties by their keys", get)
                    .takes(0, kAnyNumberOfArguments)
                    .explained("Without a KEY, shows all.\n"),
            command("set", "KEY=VALUE...", "set several properties, all or none", set)
                    .takes(1, kAnyNumberOfArguments)
                    .with(Command::kDryRun | Command::kNoCheck)
                    .explained(kSetDetails),
            command("effect", "[on|off|toggle]", "show or switch the effect", effect)
                    .takes(0, 1)
                    .with(Command::kNoCheck)
                    .explained(kCheckDetails),
            command("enable", "", "switch the effect on", enable)
                    .with(Command::kNoCheck)
                    .explained(kCheckDetails),
            command("disable", "", "switch the effect off", disable)
                    .with(Command::kNoCheck)
                    .explained(kCheckDetails),
            command("stereo", "[1|2|3]", "show or set the stereo mode", showOrSet<kStereo>)
                    .takes(0, kAnyNumberOfArguments),
            command("tuning", "ROUTE [N]", "show or pick a route's tuning", tuning)
                    .takes(1, 2)
                    .explained("N is the number of a tuning file. Only on devices with tuning "
                               "numbers.\n"),
            command("route", "[ROUTE]", "show or declare the active route", showOrSet<kRoute>)
                    .takes(0, 1)
                    .explained(kSharedDetails),
            command("mask", "[ROUTE]", "show the output devices of each route", mask).takes(0, 1),
            command("levels", "[LEVEL...]", "show or set the ten shared levels", showOrSet<kLevels>)
                    .takes(0, kAnyNumberOfArguments)
                    .explained(kSharedDetails),
            command("version", "", "show all versions", version),
            command("reload", "[on|off]", "rebuild all blocks, with or without forced mode", reload)
                    .takes(0, 1)
                    .with(Command::kNoCheck)
                    .explained(std::string(kReloadDetails) + kCheckDetails),
    };
    return table;
}
