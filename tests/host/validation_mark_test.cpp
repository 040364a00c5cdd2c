// The sign beside a box.
#include "host/ValidationMark.h"

#include <gtest/gtest.h>

#include <QLineEdit>

#include "services/TagProperty.h"

namespace {

using host::ValidationMark;
using State = host::ValidationMark::State;

TEST(ValidationMark, FollowsTextAndTag) {
    QLineEdit box;
    const ValidationMark mark(&box, ValidationMark::Kind::Checked);
    EXPECT_EQ(mark.state(), State::Nothing);
    box.setText(QStringLiteral("MADRI"));
    EXPECT_EQ(mark.state(), State::NotValidated);
    ambrel::setTag(box, 28079);
    EXPECT_EQ(mark.state(), State::Validated);
    ambrel::setTag(box, 0);
    EXPECT_EQ(mark.state(), State::NotValidated);
}

TEST(ValidationMark, SaysItsStateToWhoCannotSeeIt) {
    QLineEdit box(QStringLiteral("MADRID"));
    const ValidationMark mark(&box, ValidationMark::Kind::Checked);
    EXPECT_EQ(mark.accessibleName(), QStringLiteral("Texto sin validar"));
    ambrel::setTag(box, 1);
    EXPECT_EQ(mark.accessibleName(), QStringLiteral("Texto validado"));
}

TEST(ValidationMark, FreeTextIsNeverJudged) {
    QLineEdit box(QStringLiteral("2º B"));
    const ValidationMark mark(&box, ValidationMark::Kind::FreeText);
    EXPECT_EQ(mark.state(), State::Nothing);
}

} // namespace
