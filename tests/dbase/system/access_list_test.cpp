// Who may write a file, by its mode and its access list.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "dbase/system/access_list.h"

namespace {

using namespace dbase;

constexpr std::uint32_t ana = 1, luis = 2, staff = 10, others = 20;
using Groups = std::vector<std::uint32_t>;

FileStatus file(std::uint32_t mode, std::uint32_t owner = ana, std::uint32_t group = staff) {
    return {.owner = owner, .group = group, .mode = mode};
}

TEST(AccessListTest, TheClassOfAUserDecidesEvenAgainstAWiderOne) {
    EXPECT_TRUE(mayWrite(file(0600), ana, {}));
    EXPECT_FALSE(mayWrite(file(0466), ana, Groups{staff})) << "the owner, also as a member";
    EXPECT_TRUE(mayWrite(file(0660), luis, Groups{others, staff}));
    EXPECT_FALSE(mayWrite(file(0646), luis, Groups{staff})) << "a member, also as one of the others";
    EXPECT_TRUE(mayWrite(file(0646), luis, Groups{others}));
    EXPECT_FALSE(mayWrite(file(0664), luis, {}));
    EXPECT_TRUE(mayWrite(file(0), 0, {})) << "root";
}

TEST(AccessListTest, TheListsUsersAndGroupsWriteAsFarAsItsMaskLets) {
    // What accessOfCompanion makes of luis's table for ana: luis and staff by name, a mask that lets both
    // write.
    FileStatus listed = file(0600, ana, others);
    listed.accessList = accessOfCompanion(file(0660, luis, staff), ana, others).accessList;
    ASSERT_FALSE(listed.accessList.empty());
    EXPECT_TRUE(mayWrite(listed, luis, {}));
    EXPECT_TRUE(mayWrite(listed, 3, Groups{staff}));
    EXPECT_FALSE(mayWrite(listed, 3, Groups{others}));
    EXPECT_FALSE(mayWrite(listed, 3, {}));
    std::string& list = listed.accessList;
    list[list.size() - 14] = 4; // the mask is the last entry but one
    EXPECT_FALSE(mayWrite(listed, luis, {}));
    EXPECT_FALSE(mayWrite(listed, 3, Groups{staff}));
}

TEST(AccessListTest, ACompanionOfTheTablesOwnerAndGroupHasItsAccess) {
    const Access access = accessOfCompanion(file(0660), ana, staff);
    EXPECT_EQ(access.mode, 0660U);
    EXPECT_EQ(access.accessList, "");
    EXPECT_EQ(accessOfCompanion(file(0775), ana, staff).mode, 0664U);
}

TEST(AccessListTest, ACompanionOfAMemberOfTheGroupNeedsNoListBesideRootsTable) {
    const Access access = accessOfCompanion(file(0660, 0, staff), ana, staff);
    EXPECT_EQ(access.mode, 0660U);
    EXPECT_EQ(access.accessList, "");
}

TEST(AccessListTest, WithoutAListACompanionOfAnotherGroupGivesItWhatStrangersHave) {
    EXPECT_EQ(accessOfCompanion(file(0660), ana, others).mode, 0600U);
    EXPECT_EQ(accessOfCompanion(file(0664), ana, others).mode, 0644U);
    EXPECT_EQ(accessOfCompanion(file(0666), ana, others).mode, 0666U);
}

TEST(AccessListTest, EveryCompanionIsNoWiderThanItsTable) {
    for (const std::uint32_t mode : {0600U, 0640U, 0644U, 0660U, 0664U, 0666U, 0606U, 0646U}) {
        for (const std::uint32_t owner : {0U, ana, luis}) {
            for (const std::uint32_t group : {0U, staff, others}) {
                const FileStatus table = file(mode);
                const Access access = accessOfCompanion(table, owner, group);
                FileStatus companion = file(access.mode, owner, group);
                EXPECT_TRUE(isNoWiderThan(companion, table))
                    << std::oct << mode << ' ' << owner << ' ' << group;
                companion.accessList = access.accessList;
                EXPECT_TRUE(isNoWiderThan(companion, table))
                    << std::oct << mode << ' ' << owner << ' ' << group;
            }
        }
    }
}

TEST(AccessListTest, OneThatStrangersMayWriteIsWider) {
    EXPECT_FALSE(isNoWiderThan(file(0646), file(0644)));
    EXPECT_FALSE(isNoWiderThan(file(0664), file(0644)));
    EXPECT_FALSE(isNoWiderThan(file(0660, ana, others), file(0660)));
    EXPECT_TRUE(isNoWiderThan(file(0644), file(0600))) << "reading changes nothing";
    FileStatus listed = file(0600);
    listed.accessList = accessOfCompanion(file(0660, luis, staff), ana, others).accessList;
    EXPECT_FALSE(isNoWiderThan(listed, file(0600)));
}

TEST(AccessListTest, AListThatIsCutCountsAsFarAsItGoes) {
    FileStatus listed = file(0600, ana, others);
    listed.accessList = accessOfCompanion(file(0660, luis, staff), ana, others).accessList;
    while (!listed.accessList.empty()) {
        listed.accessList.pop_back();
        EXPECT_FALSE(mayWrite(listed, 3, {}));
    }
}

} // namespace
