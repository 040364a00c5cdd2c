// The dynamic property "Tag".
#include "services/TagProperty.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <stdexcept>
#include <vector>

#include "support/ScriptedMessages.h"

namespace {

using ambrel::setTag;
using ambrel::tagOf;
using ambrel::TagWatch;

TEST(TagProperty, IsZeroWhereThereIsNone) { EXPECT_EQ(tagOf(QLineEdit()), 0); }

TEST(TagProperty, IsReadAndWritten) {
    QLineEdit box;
    setTag(box, 99000000);
    EXPECT_EQ(tagOf(box), 99000000);
    EXPECT_EQ(box.property("Tag").toInt(), 99000000);
}

TEST(TagProperty, TakesWhatADesignerFormSet) {
    QLineEdit box;
    box.setProperty("Tag", "2");
    EXPECT_EQ(tagOf(box), 2);
}

TEST(TagProperty, WatchReportsEachNewValueWhateverSetsIt) {
    QLineEdit box;
    std::vector<int> told;
    new TagWatch(box, [&](int tag) { told.push_back(tag); });
    setTag(box, 28079);
    box.setProperty("Tag", 0);
    box.setProperty("otra", 5);
    EXPECT_EQ(told, (std::vector<int>{28079, 0}));
}

TEST(TagProperty, WatchDoesNotTellTheSameValueAgain) {
    QLineEdit box;
    int count = 0;
    new TagWatch(box, [&](int) { ++count; });
    setTag(box, 7);
    setTag(box, 7);
    EXPECT_EQ(count, 1);
}

TEST(TagProperty, WatchEndsWhenItIsDeleted) {
    QLineEdit box;
    int count = 0;
    delete new TagWatch(box, [&](int) { ++count; });
    setTag(box, 7);
    EXPECT_EQ(count, 0);
}

TEST(TagProperty, AnExceptionOfAWatchIsShown) {
    ambrel::test::ScriptedMessages messages;
    messages.expect("no va", "Atención");
    QLineEdit box;
    new TagWatch(box, [](int) { throw std::runtime_error("no va"); });
    setTag(box, 7);
    EXPECT_EQ(tagOf(box), 7);
}

} // namespace
