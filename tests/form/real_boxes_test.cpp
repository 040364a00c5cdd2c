// Puts the addresses of one real province into the boxes, one after the other.
#include <QLineEdit>
#include <QVBoxLayout>

#include "address/RealProvince.h"
#include "form/AddressBoxes.h"
#include "support/ScriptedMessages.h"
#include "support/ShownWindow.h"

namespace {

using namespace postal_tests;
using ambrel::AddressBoxes;

class RealBoxes : public RealProvince {
protected:
    void SetUp() override {
        RealProvince::SetUp();
        auto* column = new QVBoxLayout(&form_);
        for (QLineEdit** box :
             {&boxes_.municipality, &boxes_.streetType, &boxes_.street, &boxes_.number, &boxes_.postalCode}) {
            column->addWidget(*box = new QLineEdit(&form_));
        }
    }

    /// A fraction of the addresses: the other trials look up tens of thousands, which is too slow with boxes.
    [[nodiscard]] std::vector<KnownAddress> some() const {
        constexpr std::size_t one = 23;
        std::vector<KnownAddress> chosen;
        const std::vector<KnownAddress> all = addresses();
        for (std::size_t i = 0; i < all.size(); i += one) {
            chosen.push_back(all[i]);
        }
        return chosen;
    }

    [[nodiscard]] Tally fillIn(const std::vector<KnownAddress>& addresses) {
        ambrel::test::ScriptedMessages noQuestions;
        AddressBoxes address(boxes_);
        ambrel::test::showActive(form_);
        return tryAddresses(addresses, [&](const KnownAddress& one) -> std::optional<std::string> {
            for (const AddressBoxes::Box box : filled) {
                boxes_.at(box)->clear();
            }
            address.takeStored();
            fill(boxes_.municipality, one.municipality);
            fill(boxes_.streetType, one.type);
            fill(boxes_.street, one.street);
            fill(boxes_.number, std::to_string(one.number));
            boxes_.postalCode->setFocus();
            for (const AddressBoxes::Box box : filled) {
                if (address.state(box) != AddressBoxes::State::Validated) {
                    return std::nullopt;
                }
            }
            return boxes_.postalCode->text().toStdString();
        });
    }

private:
    static constexpr std::array filled{AddressBoxes::Box::Municipality, AddressBoxes::Box::StreetType,
                                       AddressBoxes::Box::Street, AddressBoxes::Box::Number,
                                       AddressBoxes::Box::PostalCode};

    /// Fills a box as a paste does.
    static void fill(QLineEdit* box, const std::string& text) {
        box->setFocus();
        box->selectAll();
        box->insert(QString::fromStdString(text));
    }

    QWidget form_;
    AddressBoxes::Boxes boxes_;
};

void expectRight(const Tally& tally) {
    EXPECT_GE(tally.exact, 800);
    EXPECT_GE(tally.foundShare(), 0.99) << tally.found << " of " << tally.exact;
    for (const std::string& wrong : tally.wrong) {
        ADD_FAILURE() << wrong;
    }
}

TEST_F(RealBoxes, AreRightInTheTablesOfAWholeProvince) {
    load(false);
    expectRight(fillIn(some()));
}

TEST_F(RealBoxes, AreRightWhereEveryRowNamesItsMunicipality) {
    load(true);
    expectRight(fillIn(some()));
}

} // namespace
