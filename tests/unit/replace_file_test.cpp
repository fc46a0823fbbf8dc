#include "settings/replace_file.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <functional>

#include "tests/support/call_faults.h"
#include "tests/support/phone.h"

namespace {

// Names are those of files in the service's directory.
constexpr char kName[] = "name";
constexpr char kTemporary[] = "name.tmp";
const std::string kNew = "new contents";

std::string at(const std::string& name) {
    return kKeptDirectory + name;
}

void make(const std::string& name = kName) {
    writeFile(at(name), std::string(500, 'x'));
}

void makeDirectory(const std::string& name) {
    ASSERT_EQ(mkdir(at(name).c_str(), 0700), 0);
}

void makeLink(const std::string& target, const std::string& name = kName) {
    ASSERT_EQ(symlink(target.c_str(), at(name).c_str()), 0);
}

// The directory is opened anew then.
void makeAllAnew() {
    std::filesystem::remove_all(kKeptDirectory);
    makeDirectory("");
    make();
}

bool isNew(const std::string& name) {
    return readFile(at(name)) == Bytes(kNew.begin(), kNew.end());
}

struct Replacer {
    ReplaceResult replace(Fault* fault = nullptr) {
        setFault(fault);
        const ReplaceResult result = replaceFile(directory, kName, kNew.data(), kNew.size());
        setFault(nullptr);
        return result;
    }

    Phone phone;
    SaveDirectory directory;
};

}  // namespace

TEST(ReplaceFile, ADirectoryThatWasMadeAnewIsTheOne) {
    Replacer r;
    makeAllAnew();
    EXPECT_EQ(r.replace(), ReplaceResult::kSynced);
    EXPECT_TRUE(isNew(kName));
    // That one is kept again: only the old file and the temporary one are opened.
    Fault none = {kOpen, INT_MAX};
    EXPECT_EQ(r.replace(&none), ReplaceResult::kSynced);
    EXPECT_EQ(none.reached, 2);
}

// A file that is written in place would be the same one afterwards.
TEST(ReplaceFile, ATemporaryFileThatWasLeftIsInNobodysWay) {
    Replacer r;
    make();
    make(kTemporary);
    ASSERT_EQ(link(at(kName).c_str(), at("same").c_str()), 0);
    EXPECT_EQ(r.replace(), ReplaceResult::kSynced);
    EXPECT_TRUE(isNew(kName));
    EXPECT_FALSE(isNew("same"));
    EXPECT_FALSE(exists(at(kTemporary)));
}

// The new file is in place, but a power cut might take it back.
TEST(ReplaceFile, WhatCannotBeSyncedIsTold) {
    const auto elsewhere = [] { makeDirectory("other"), makeLink("other/target"); };
    // Made in place, as no temporary one can be.
    const auto inPlace = [] { makeDirectory(kTemporary); };
    struct {
        std::function<void()> prepare;
        int nth;
        const char* place;
    } const kCases[] = {{[] {}, 1, kName},
                        {elsewhere, 1, "other/target"},
                        {inPlace, 0, kName},
                        {inPlace, 1, kName}};
    for (const auto& c : kCases) {
        Replacer r;
        c.prepare();
        Fault fault = {kSync, c.nth, EIO};
        EXPECT_EQ(r.replace(&fault), ReplaceResult::kNotWritten) << c.place << c.nth;
        EXPECT_TRUE(isNew(c.place));
    }
}

TEST(ReplaceFile, AsManyLinksAreFollowedAsTheKernelFollows) {
    for (int links : {40, 41}) {
        Replacer r;
        make("0");
        for (int i = 1; i < links; ++i) makeLink(std::to_string(i - 1), std::to_string(i));
        makeLink(std::to_string(links - 1));
        EXPECT_EQ(access(at(kName).c_str(), W_OK) == 0, links == 40);
        EXPECT_EQ(r.replace() == ReplaceResult::kSynced, links == 40);
        EXPECT_EQ(isNew("0"), links == 40);
    }
}

// Whatever stands in the file's place or beside it: what the file itself allows decides. It keeps
// its mode and its link.
TEST(ReplaceFile, WhatCanBeOpenedForWritingIsReplaced) {
    constexpr auto kSynced = ReplaceResult::kSynced;
    constexpr auto kReplaced = ReplaceResult::kReplaced;
    constexpr auto kNotOpened = ReplaceResult::kNotOpened;
    const auto makeFile = [] { make(); };
    const auto makeTarget = [](const std::string& link) { make("target"), makeLink(link); };
    const auto makeNode = [](mode_t kind, dev_t device) {
        ASSERT_EQ(mknod(at(kName).c_str(), kind | 0600, device), 0);
    };
    const auto makeElsewhere = [] {
        makeDirectory("other"), make("other/target"), makeLink("other/target");
    };
    const auto makeChain = [](const std::string& second) {
        makeDirectory("other"), makeLink("other/link"), makeLink(second, "other/link");
    };
    std::string longPath = "target";
    while (longPath.size() < PATH_MAX - 4) longPath.insert(0, "./");
    struct {
        const char* name;
        std::function<void()> prepare;
        ReplaceResult result;
        const char* place = kName;
        // The fault of a call, where there is one: the n-th open, or the rename.
        Fault fault = {};
    } const kCases[] = {
            {"nothing", [] {}, kSynced},
            {"a file", makeFile, kSynced},
            {"one that may not be written", makeFile, kNotOpened, kName, {kOpen, 0, EACCES}},
            {"a directory", [] { makeDirectory(kName); }, kNotOpened},
            {"no directory", [] { std::filesystem::remove_all(kKeptDirectory); }, kNotOpened},
            {"a FIFO", [&] { makeNode(S_IFIFO, 0); }, kNotOpened},
            {"a socket", [&] { makeNode(S_IFSOCK, 0); }, kNotOpened},
            {"a device", [&] { makeNode(S_IFCHR, makedev(1, 3)); }, kNotOpened},
            {"a link", [&] { makeTarget("target"); }, kSynced, "target"},
            {"a link by its whole path", [&] { makeTarget(at("target")); }, kReplaced, "target"},
            {"a link to a link elsewhere", [&] { makeChain("t"); }, kReplaced, "other/t"},
            {"one by its whole path there", [&] { makeChain(at("t")); }, kReplaced, "t"},
            {"a link elsewhere", makeElsewhere, kReplaced, "other/target"},
            {"where nobody may read", makeElsewhere, kReplaced, "other/target", {kOpen, 2, EACCES}},
            {"a link to nothing", [] { makeLink("t"); }, kSynced, "t"},
            {"a link to itself", [] { makeLink(kName); }, kNotOpened},
            {"no room for a name", [&] { makeTarget(longPath); }, kNotOpened, "target"},
            {"a stale temporary", [] { make(kTemporary); }, kSynced},
            {"a directory by its name", [] { make(), makeDirectory(kTemporary); }, kReplaced},
            {"and no file", [] { makeDirectory(kTemporary); }, kReplaced},
            {"a directory not to write", makeFile, kReplaced, kName, {kOpen, 1, EACCES}},
            {"a directory not to read", makeAllAnew, kReplaced, kName, {kOpen, 0, EACCES}},
            {"no inode left", makeFile, kReplaced, kName, {kOpen, 1, ENOSPC}},
            {"a file not to replace", makeFile, kReplaced, kName, {kRename, 0, EPERM}},
            {"a table full of descriptors", makeFile, kSynced, kName, {kOpen, 0, EMFILE}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        Replacer r;
        c.prepare();
        const std::string place = at(c.place);
        struct stat before = {};
        struct stat after = {};
        const bool had = stat(place.c_str(), &before) == 0 && chmod(place.c_str(), 0640) == 0;
        const bool link = std::filesystem::is_symlink(at(kName));
        const bool saved = c.result != kNotOpened;
        Fault fault = c.fault;
        EXPECT_EQ(r.replace(fault.calls != 0 ? &fault : nullptr), c.result);
        EXPECT_EQ(std::filesystem::is_symlink(at(kName)), link);
        ASSERT_EQ(stat(place.c_str(), &after) == 0, saved || had);
        if (had) {
            EXPECT_EQ(after.st_mode, (before.st_mode & S_IFMT) | 0640);
        }
        EXPECT_EQ(saved && isNew(c.place), saved);
        EXPECT_TRUE(saved || after.st_ino == before.st_ino);
        EXPECT_FALSE(std::filesystem::is_regular_file(at(kTemporary)));
    }
}
