#include "platform/file_lock.h"
#include "tests/support/temporary_drive.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <future>
#include <iostream>
#include <thread>

namespace korvadex {
namespace {

using namespace std::chrono_literals;

constexpr const char* Name = "Hangar\\lock";

class FileLocks : public testing::Test {
  protected:
    FileLocks() { drive.MakeDirectory("Hangar"); }
    LockAttempt Take(const std::string& name = Name) { return TakeFileLock(Host(name)); }
    std::string Host(const std::string& name) { return drive.Files().HostPath(drive.At(name)); }

    test::TemporaryDrive drive;
};

TEST_F(FileLocks, OneAtATimeHasIt) {
    auto first = Take();
    ASSERT_EQ(first.outcome, LockOutcome::Taken);
    EXPECT_TRUE(first.lock->IsAt(Host(Name)));
    const auto self = ThisHolder("C:\\Korvadex\\");
    EXPECT_EQ(drive.Get(Name), "");
    first.lock->Sign(self);
    EXPECT_EQ(HolderOf(drive.Get(Name)), self);
    for (int i = 0; i < 2; ++i) { // a refusal takes nothing from it
        const auto second = Take();
        EXPECT_EQ(second.outcome, LockOutcome::HeldByOther);
        EXPECT_FALSE(second.lock);
        EXPECT_EQ(second.holder, self);
    }
    first.lock.reset();
    EXPECT_FALSE(drive.Has(Name));
    EXPECT_EQ(Take().outcome, LockOutcome::Taken);
}

TEST_F(FileLocks, AMarkStaysUntilItIsSignedOver) {
    const std::string mark = TextOf({"anna", "WORKSHOP", "22.11.2026 10:47", "D:\\Korvadex\\"});
    drive.Put(Name, mark + "more");
    for (int i = 0; i < 2; ++i) {
        const auto found = Take();
        ASSERT_EQ(found.outcome, LockOutcome::Taken);
        EXPECT_EQ(TextOf(found.left), mark);
    }
    EXPECT_EQ(drive.Get(Name), mark + "more");
    const auto found = Take();
    found.lock->Sign({"w", "", "", ""});
    EXPECT_EQ(drive.Get(Name), "w\r\n\r\n\r\n\r\n");
}

TEST_F(FileLocks, OneAtATimeHasItAlsoWhereManyComeAndGo) {
    std::atomic<int> inside = 0, turns = 0;
    const auto path = Host(Name);
    std::vector<std::thread> others;
    for (int i = 0; i < 3; ++i)
        others.emplace_back([&] {
            while (turns < 300)
                if (const auto attempt = TakeFileLock(path); attempt.lock) {
                    EXPECT_EQ(++inside, 1);
                    ++turns;
                    std::this_thread::yield();
                    --inside;
                }
        });
    for (auto& other : others)
        other.join();
    EXPECT_EQ(drive.Outline(), "Hangar\\");
}

TEST_F(FileLocks, KnowsWhenItsFileHasGone) {
    const auto first = Take();
    EXPECT_TRUE(!drive.MakeLink("Other", "Hangar") || first.lock->IsAt(Host("Other\\lock")));
    ASSERT_TRUE(drive.Files().Rename(drive.At(Name), drive.At("Hangar\\moved")));
    EXPECT_FALSE(first.lock->IsAt(Host(Name)));
    auto second = Take();
    ASSERT_EQ(second.outcome, LockOutcome::Taken);
    EXPECT_FALSE(first.lock->IsAt(Host(Name)));
    EXPECT_TRUE(second.lock->IsAt(Host(Name)));
}

TEST_F(FileLocks, WhatIsNoFileIsLeftAlone) {
    drive.Fill("", "Hangar\\directory\\a=x, theirs.txt=precious");
    EXPECT_NE(Take("Hangar\\directory").outcome, LockOutcome::Taken);
    EXPECT_EQ(Take("Nowhere\\lock").outcome, LockOutcome::CannotWrite);
    if (!drive.MakeLink("Hangar\\link", "theirs.txt"))
        return;
    EXPECT_EQ(Take("Hangar\\link").outcome, LockOutcome::NoLocks);
    EXPECT_EQ(drive.Outline(), "Hangar\\directory\\a=x, Hangar\\link=(link), theirs.txt=precious");
}

TEST_F(FileLocks, ReadsWhateverStandsThere) {
    const struct {
        const char* text;
        LockHolder holder;
    } rows[] = {
        {"", {}},
        {"anna", {"anna", "", "", ""}},
        {"anna\r\n\r\n22.11.2026\r\nD:\\\r\nmore\r\n", {"anna", "", "22.11.2026", "D:\\"}},
        {"an\tna\nw\x1B\x7F\n", {"anna", "w", "", ""}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(HolderOf(row.text), row.holder) << row.text;
}

// The other process of the test below: has the lock until it is told to end, and leaves the file as a killed one does.
TEST_F(FileLocks, DISABLED_OfAnotherProcess) {
    std::string path, end;
    if (!std::getline(std::cin, path) || !std::getline(std::cin, end))
        return;
    const auto lock = TakeFileLock(path);
    if (lock.lock)
        lock.lock->Sign(ThisHolder());
    while (lock.lock && !std::filesystem::exists(end))
        std::this_thread::yield();
    std::_Exit(0);
}

TEST_F(FileLocks, EndsWithItsProcess) {
    drive.Put("talk", Host(Name) + "\n" + Host("end") + "\n");
    drive.Put(Name, "somebody\r\nsomewhere\r\nlong ago\r\n");
    const auto command = "<\"" + Host("talk") + "\" >\"" + Host("said") + "\" \"" +
                         testing::internal::GetArgvs().front() +
                         "\" --gtest_filter=*OfAnotherProcess --gtest_also_run_disabled_tests";
    auto other = std::async(std::launch::async, [&] { return std::system(command.c_str()); });
    while (HolderOf(drive.Get(Name)).machine == "somewhere" && other.wait_for(1ms) != std::future_status::ready)
        ;
    const auto refused = Take();
    drive.Put("end", "");
    EXPECT_EQ(other.get(), 0);
    EXPECT_EQ(refused.outcome, LockOutcome::HeldByOther);
    EXPECT_EQ(refused.holder.machine, ThisHolder().machine);
    EXPECT_EQ(Take().left, refused.holder);
}

} // namespace
} // namespace korvadex
