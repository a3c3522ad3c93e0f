#include "KartoCore/LayoutCheck.h"

#include "Support/Trees.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace karto {

namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testing::landscape, testing::portrait, testing::rectAt, testing::zone;

DisplayInfo lying(std::string name) { return {std::move(name), rectAt(0, 0, 1920, 1080)}; }

DisplayInfo standing(std::string name) { return {std::move(name), rectAt(0, 0, 1080, 1920)}; }

std::vector<std::string> messages(const std::vector<DisplayLayout>& layouts,
                                  const std::vector<DisplayInfo>& displays) {
    std::vector<std::string> messages;
    for (const LayoutWarning& warning : LayoutCheck::warnings({"", layouts, {}, {}}, displays)) {
        messages.push_back(message(warning));
    }
    return messages;
}

std::string absent(const std::string& name, const std::string& orientation = "landscape") {
    return "\"" + name + "\" (" + orientation + ") is not connected right now. Its zones are kept.";
}

TEST(LayoutCheck, layoutsWarnUnlessTheirDisplayStandsAsTheyExpect) {
    EXPECT_THAT(messages({landscape("A", zone()), portrait("B", zone())}, {standing("B"), lying("A")}),
                IsEmpty());
    EXPECT_THAT(messages({landscape("A", zone()), portrait("A", zone())}, {lying("A")}),
                ElementsAre(absent("A", "portrait")));
    EXPECT_THAT(messages({landscape("Display", zone())}, {lying("display"), lying("Display ")}),
                ElementsAre(absent("Display")));
}

TEST(LayoutCheck, absentDisplaysAreListedOnceByNameAsItReadsAndThenLandscapeFirst) {
    EXPECT_THAT(messages({portrait("b", zone()), landscape("b", zone()), landscape("a", zone()),
                          landscape("B", zone()), landscape("a", zone())},
                         {}),
                ElementsAre(absent("B"), absent("a"), absent("b"), absent("b", "portrait")));
    const std::string composedE = "\u00e9";
    const std::string decomposedE = "e\u0301";
    // As bytes the decomposed name would come before "f".
    EXPECT_THAT(messages({landscape(decomposedE, zone()), landscape("f", zone())}, {}),
                ElementsAre(absent("f"), absent(decomposedE)));
    EXPECT_THAT(messages({landscape(composedE, zone()), landscape(decomposedE, zone())}, {}),
                ElementsAre(absent(composedE)));
    // A display of the one spelling shows nothing of a layout of the other.
    EXPECT_THAT(messages({landscape(composedE, zone()), landscape(decomposedE, zone())}, {lying(composedE)}),
                ElementsAre(absent(decomposedE)));
}

TEST(LayoutCheck, sharedNamesFollowTheAbsentOnes) {
    const auto shared = [](const std::string& count, const std::string& orientation) {
        return count + " displays report the name \"A\" (" + orientation +
               "). Zones for it all resolve onto one of them.";
    };
    EXPECT_THAT(messages({landscape("Z", zone()), portrait("A", zone()), landscape("A", zone())},
                         {lying("A"), standing("A"), standing("A"), lying("A"), standing("A"), lying("C")}),
                ElementsAre(absent("Z"), shared("2", "landscape"), shared("3", "portrait")));
}

} // namespace

} // namespace karto
