// Two starts of the program on one directory of settings.
#include "ui/single_instance.h"

#include <gtest/gtest.h>

#include <QtTest>

namespace korvadex::test {
namespace {

using Outcome = SingleInstance::Outcome;

// Another process, as far as the two can tell.
Outcome ClaimBeside(const QString& directory) {
    Outcome outcome{};
    const std::unique_ptr<QThread> thread(QThread::create([&] { outcome = SingleInstance(directory).Claim(); }));
    thread->start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return thread->isFinished(); }, 20000));
    thread->wait();
    return outcome;
}

TEST(SingleInstance, ASecondStartBringsTheFirstToTheFront) {
    const QTemporaryDir directory, other;
    ASSERT_TRUE(QFile::link(directory.path(), other.filePath("link")));
    // On Windows Qt makes a shortcut, which is a place of its own.
    const bool isLinked = QFileInfo(other.filePath("link")).isSymbolicLink();
    SingleInstance first(directory.path());
    int asked = 0;
    QObject::connect(&first, &SingleInstance::Asked, [&] { ++asked; });
    EXPECT_EQ(first.Claim(), Outcome::First);
    EXPECT_EQ(ClaimBeside(directory.path() + "/."), Outcome::Shown);
    EXPECT_EQ(ClaimBeside(isLinked ? other.filePath("link") : directory.path()), Outcome::Shown);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(ClaimBeside(other.path()), Outcome::First);

    // In the middle of a long command there is no answer, but a live program all the same.
    EXPECT_EQ(SingleInstance(directory.path()).Claim(), Outcome::Busy);
    first.GiveUp();
    EXPECT_EQ(ClaimBeside(directory.path()), Outcome::First);
}

} // namespace
} // namespace korvadex::test
