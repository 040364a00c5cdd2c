// A user types, pastes, undoes, opens lists and answers at random while another program changes the tables:
// what the form then calls validated must follow from the tables, computed without the form's own pieces.
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <array>
#include <random>
#include <set>

#include "data/AddressOracle.h"
#include "data/PostalTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"
#include "dbase/table/table_definition.h"
#include "form/AddressBoxes.h"
#include "form/RecordBinding.h"
#include "services/MessageBox.h"
#include "services/TagProperty.h"
#include "services/Text.h"
#include "support/LongForm.h"
#include "support/Seed.h"
#include "support/ShownWindow.h"

namespace {

using ambrel::AddressBoxes;
using Box = AddressBoxes::Box;
using State = AddressBoxes::State;

constexpr std::array everyBox{Box::Municipality, Box::Province, Box::StreetType,
                              Box::Street,       Box::Number,   Box::PostalCode};

constexpr int columnWidth = 60; // of the host's table

class RandomUser : public postal_tests::PostalTables {
protected:
    RandomUser() {
        addProvinces({{"001", "ALAVA"}, {"009", "BURGOS"}, {"017", "GIRONA"}, {"033", "ASTURIAS"}});
        addStreetTypes({{"CL", "CALLE"}, {"PZ", "PLAZA"}, {"AV", "AVENIDA"}});
        addMunicipalities({{"01059", "01001", "VITORIA", "N", "0"},
                           {"01059", "01002", "VITORIA", "N", "0"},
                           {"01060", "01003", "VITORIANO", "S"},
                           {"09901", "01003", "TREVI", "N", ""},
                           {"09901", "09215", "TREVI", "N", ""},
                           {"17105", "17830", "MIERES", "S"},
                           {"33037", "33600", "MIERES"},
                           {"33037", "33610", "MIERES"},
                           {"33037", "33610", "MIAR", "N", "9", true},
                           {"33038", "33610", "MIO", "N"}});
        addStreets({{"00000001", "ALTA", "CL", "01003", {1, 9999}, {2, 9998}, "01", "9"},
                    {"01000002", "ALTA", "CL", "01001", {1, 99}, {2, 98}, "01"},
                    {"01000003", "ALTA", "CL", "01002", {101, 9999}, {100, 9998}, "01"},
                    {"01000004", "ALTA", "PZ", "01002", {1, 9999}, {2, 9998}, "01"},
                    {"01000005", "ALAMO", "", "01001", {1, 9999}, {2, 9998}, "01", ""},
                    {"09000001", "ALTA", "CL", "09215", {1, 9999}, {2, 9998}, "09", "9"},
                    {"17000001", "MAYOR", "CL", "17830", {1, 9999}, {2, 9998}, "17", "9"},
                    {"33000001", "MAYOR", "CL", "33610", {1, 9999}, {2, 9998}, "33", "9", "33038"},
                    {"33000002", "MAYOR", "CL", "33600", {1, 99}, {2, 98}, "33", "9", "33037"},
                    {"33000003", "MAYOR", "CL", "33610", {101, 9999}, {100, 9998}, "33", "9"},
                    {"33000004", "MALA", "AV", "33699", {1, 9999}, {2, 9998}, "33", "", "33038"}});
        dbase::TableDefinition customers;
        customers.name = "CLIENTES";
        for (const char* name : {"VECINDAD", "PROVINCIA", "TIPO", "DOMICILIO", "NUMERO", "CODPOSTAL"}) {
            customers.columns.push_back(
                {.name = name, .type = dbase::ColumnType::Character, .width = columnWidth});
        }
        dbase::createTable(folder.path(), customers);
        customers_.open();
        store({"MIERES", "ASTURIAS", "CL", "MAYOR", "5", "33600"});
        store({"TREVI", "BURGOS", "CL", "ALTA", "5", "09215"});
        store({"NINGUNO", "", "", "MAYOR", "S/N", "17830"});
        customers_.first();
        others_.open();

        auto* column = new QVBoxLayout(&form_);
        for (QLineEdit** edit : {&boxes_.municipality, &boxes_.province, &boxes_.streetType, &boxes_.street,
                                 &boxes_.number, &boxes_.postalCode}) {
            column->addWidget(*edit = new QLineEdit(&form_));
        }
        column->addWidget(new QPushButton(&form_));
        for (std::size_t index = 0; index < everyBox.size(); ++index) {
            record_.bind(boxes_.at(everyBox[index]), *customers_.fields()[index]);
        }
        address_ = std::make_unique<AddressBoxes>(boxes_);
        address_->setRecord(record_);
        record_.showRow();
        previous_ = ambrel::setMessageShower([this](const ambrel::MessageBox&) {
            ++messages_;
            return isDeclining_ ? ambrel::MessageAnswer::No
                                : pick(std::array{ambrel::MessageAnswer::Yes, ambrel::MessageAnswer::No,
                                                  ambrel::MessageAnswer::Cancel});
        });
        qApp->installEventFilter(&dialogs_);
        ambrel::test::showActive(form_);
    }
    ~RandomUser() override {
        qApp->removeEventFilter(&dialogs_);
        ambrel::setMessageShower(std::move(previous_));
        address_.reset();
    }

    void store(const std::vector<std::string>& texts) {
        customers_.append();
        for (std::size_t index = 0; index < texts.size(); ++index) {
            customers_.fields()[index]->setText(texts[index]);
        }
        customers_.post();
    }

    int roll(int sides) { return std::uniform_int_distribution<>(0, sides - 1)(random_); }
    template<class Choices>
    typename Choices::value_type pick(const Choices& choices) {
        return choices[static_cast<std::size_t>(roll(static_cast<int>(std::size(choices))))];
    }
    QLineEdit& anyBox() { return *boxes_.at(pick(everyBox)); }
    QString anyText() {
        static const std::array<const char*, 24> texts{
            "MIERES", "MIAR",   "mie",   "VITORIA", "VITORIANO", "TREVI", " trevi ", "MIO",
            "ALTA",   "alamo",  "MAYOR", "MALA",    "NUEVA",     "CL",    "PZ",      "calle",
            "5",      "12 BIS", "150",   "S/N",     "99999",     "33610", "GIRONA",  ""};
        return QLatin1String(pick(texts));
    }
    QWidget& focused() {
        if (!QApplication::focusWidget()) { // after a dialog the test platform leaves no window active
            form_.activateWindow();
            QApplication::processEvents();
        }
        return QApplication::focusWidget() ? *QApplication::focusWidget() : form_;
    }

    void step() {
        switch (roll(15)) {
        case 0:
            return QTest::keyClick(&focused(), pick(std::array{Qt::Key_Tab, Qt::Key_Backtab}));
        case 1:
            return anyBox().setFocus();
        case 2: { // a text, typed
            auto* const box = &anyBox();
            box->setFocus();
            if (roll(2) == 0) {
                box->selectAll();
            }
            return typeKeys(*box, anyText());
        }
        case 3: // letters whose keys overlap
            for (const Qt::Key key : {Qt::Key_M, Qt::Key_A, pick(std::array{Qt::Key_I, Qt::Key_L})}) {
                QTest::keyPress(&focused(), key);
            }
            QTest::keyRelease(&focused(), Qt::Key_M);
            if (roll(2) == 0) {
                QTest::keyClick(&focused(), Qt::Key_Tab);
            }
            return QTest::keyRelease(&focused(), Qt::Key_A);
        case 4:
            QGuiApplication::clipboard()->setText(anyText());
            return QTest::keyClick(&focused(), pick(std::array{Qt::Key_V, Qt::Key_X, Qt::Key_C}),
                                   Qt::ControlModifier);
        case 5:
            return QTest::keyClick(&focused(), pick(std::array{Qt::Key_Z, Qt::Key_Y, Qt::Key_A}),
                                   Qt::ControlModifier);
        case 6:
            return QTest::keyClick(&focused(), pick(std::array{Qt::Key_Insert, Qt::Key_Delete}),
                                   Qt::ShiftModifier);
        case 7:
            return QTest::keyClick(&focused(), pick(std::array{Qt::Key_Backspace, Qt::Key_Delete,
                                                               Qt::Key_Home, Qt::Key_End, Qt::Key_Left}));
        case 8:
            return QTest::keyClick(&focused(), Qt::Key_F4);
        case 9: // as a completer, a screen reader or a drop does
            return setProgramText(anyBox());
        case 10:
            return roll(3) == 0 ? address_->openStreetCard() : address_->settle();
        case 11:
            return anotherCustomer();
        case 12:
            return wholeAddress();
        case 13:
            return roll(2) == 0 ? somebodyElse() : holdOrLetGo();
        default:
            return goThroughTwice();
        }
    }

    void setProgramText(QLineEdit& box) {
        if (roll(2) == 0) {
            box.setText(anyText());
        } else {
            box.insert(anyText());
        }
    }

    void typeKeys(QWidget& box, const QString& text) {
        for (const QChar letter : text) {
            QTest::sendKeyEvent(QTest::Click, &box, static_cast<Qt::Key>(letter.toUpper().unicode()),
                                QString(letter), Qt::NoModifier);
        }
    }

    /// Types what is not quite in the tables, and takes one of the rows under the box, or none.
    void useSuggestions() {
        QLineEdit& box = *pick(std::array{boxes_.municipality, boxes_.street});
        box.setFocus();
        if (roll(3) != 0) {
            box.selectAll();
        }
        typeKeys(box, QLatin1String(pick(std::array{"meires", "vitorai", "la treby", "33610", "c/ mallor 5",
                                                    "alat", "plaza alta 150", "avda. mala", "mayor"})));
        QTest::qWait(2); // the rows may come in pieces
        for (int count = roll(4); count > 0; --count) {
            QTest::keyClick(&focused(), pick(std::array{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up,
                                                        Qt::Key_PageDown, Qt::Key_PageUp}));
        }
        if (roll(4) == 0) {
            somebodyElse();
        }
        QTest::keyClick(&focused(),
                        pick(std::array{Qt::Key_Return, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape}));
        if (roll(4) == 0) {
            QTest::keyClick(&focused(), Qt::Key_Z, Qt::ControlModifier);
        }
    }

    void wholeAddress() {
        const std::array texts{pick(std::array{"MIERES", "VITORIA", "TREVI", "MIO"}), "", "CL",
                               pick(std::array{"ALTA", "MAYOR"}), pick(std::array{"5", "150"})};
        for (std::size_t index = 0; index < texts.size(); ++index) {
            QLineEdit& box = *boxes_.at(everyBox[index]);
            box.setFocus();
            box.selectAll();
            typeKeys(box, QLatin1String(texts[index]));
        }
        address_->settle();
    }

    void anotherCustomer() {
        address_->settle();
        if (customers_.state() != dbase::DatasetState::Browse) {
            if (roll(2) == 0) {
                customers_.post();
            } else {
                customers_.cancel();
            }
        }
        static_cast<void>(roll(2) == 0 ? customers_.next() : customers_.prior());
        record_.showRow();
    }

    /// Changes the tables; the form looks its texts up again, as when a host shows the row again.
    void somebodyElse() {
        dbase::Dataset streets("DB", "POSTAL");
        streets.open();
        for (int count = roll(11); count > 0; --count) {
            static_cast<void>(streets.next());
        }
        try {
            streets.edit();
            streets.field("CODPOSTAL").setText(pick(std::array{"01001", "01002", "01003", "33600", "33610"}));
            streets.post();
        } catch (const dbase::Error&) { // the form holds it
        }
        address_->takeStored();
    }

    void holdOrLetGo() {
        if (others_.state() == dbase::DatasetState::Edit) {
            return others_.cancel();
        }
        others_.goTo(customers_.bookmark());
        try {
            others_.edit();
        } catch (const dbase::Error&) { // the form holds it
        }
    }

    void goThroughTwice() {
        isDeclining_ = true;
        const auto through = [this] {
            boxes_.municipality->setFocus();
            for (std::size_t count = 0; count < everyBox.size(); ++count) {
                QTest::keyClick(&focused(), Qt::Key_Tab);
            }
        };
        through();
        const QStringList before = texts();
        const int asked = messages_;
        through();
        EXPECT_EQ(texts(), before) << "going through the boxes changed them";
        EXPECT_EQ(messages_, asked) << "going through the boxes asked";
        isDeclining_ = false;
    }

    [[nodiscard]] QStringList texts() const {
        QStringList all;
        for (const Box box : everyBox) {
            all << boxes_.at(box)->text();
        }
        return all;
    }
    [[nodiscard]] std::string written(Box box) const {
        return ambrel::toNearestWindows1252(boxes_.at(box)->text().simplified().toUpper());
    }

    void check() {
        for (std::size_t index = 0; index < everyBox.size(); ++index) {
            QString shown = boxes_.at(everyBox[index])->text().left(columnWidth);
            while (shown.endsWith(QLatin1Char(' '))) {
                shown.chop(1);
            }
            EXPECT_EQ(ambrel::fromWindows1252(customers_.fields()[index]->text()), shown) << "the row";
        }
        const int tag = ambrel::tagOf(*boxes_.municipality);
        const std::string ineCode = QStringLiteral("%1").arg(tag, 5, 10, QLatin1Char('0')).toStdString();
        const postal_tests::AddressOracle oracle;
        if (address_->state(Box::Municipality) == State::Validated) {
            EXPECT_TRUE(oracle.namesOf(ineCode).contains(written(Box::Municipality))) << ineCode;
        }
        if (address_->state(Box::PostalCode) != State::Validated) {
            return;
        }
        EXPECT_EQ(address_->state(Box::Municipality), State::Validated);
        EXPECT_EQ(oracle.codes(ineCode, written(Box::Street), written(Box::StreetType), written(Box::Number)),
                  std::set{boxes_.postalCode->text().toStdString()});
        ++validated_;
    }

    /// Does something in each dialog that comes, and closes it.
    class Dialogs : public QObject {
    public:
        explicit Dialogs(RandomUser& user) : user_(user) {}
        bool eventFilter(QObject* watched, QEvent* event) override {
            auto* dialog = qobject_cast<QDialog*>(watched);
            if (event->type() == QEvent::Show && dialog && dialog->isModal()) {
                QTimer::singleShot(0, dialog, [this, alive = QPointer<QDialog>(dialog)] {
                    if (QWidget* focused = alive ? alive->focusWidget() : nullptr) {
                        user_.typeKeys(*focused, user_.anyText());
                    }
                    const char* const name = user_.pick(std::array{"BBAceptar", "BBAceptar", "BBCancelar"});
                    if (auto* button =
                            alive ? alive->findChild<QPushButton*>(QLatin1String(name)) : nullptr) {
                        button->click();
                    }
                    if (alive && alive->isVisible()) {
                        alive->done(2);
                    }
                });
            }
            return false;
        }

    private:
        RandomUser& user_;
    };

    std::mt19937 random_{ambrel::test::seedOfThisRun()};
    dbase::Dataset customers_{"DB", "CLIENTES"}, others_{"DB", "CLIENTES"};
    QWidget form_;
    AddressBoxes::Boxes boxes_;
    ambrel::RecordBinding record_{customers_};
    std::unique_ptr<AddressBoxes> address_;
    Dialogs dialogs_{*this};
    ambrel::MessageShower previous_;
    int messages_ = 0, validated_ = 0;
    bool isDeclining_ = false;
};

TEST_F(RandomUser, GetsNoCodeThatTheTablesDoNotGive) {
    const int steps = ambrel::test::longForm(400, 40000);
    check();
    ASSERT_EQ(validated_, 1) << "the first customer's address is right";
    for (int count = 0; count < steps && !HasFailure(); ++count) {
        step();
        check();
        if (HasFailure()) {
            ADD_FAILURE() << "step " << count << ", texts: " << texts().join(QLatin1Char('|')).toStdString()
                          << ", reason: " << address_->reason(Box::PostalCode).toStdString();
        }
    }
}

TEST_F(RandomUser, GetsNoWrongCodeFromASuggestion) {
    const int steps = ambrel::test::longForm(200, 20000);
    for (int count = 0; count < steps && !HasFailure(); ++count) {
        useSuggestions();
        check();
        if (!HasFailure() && roll(2) == 0) {
            step();
            check();
        }
        if (HasFailure()) {
            ADD_FAILURE() << "step " << count << ", texts: " << texts().join(QLatin1Char('|')).toStdString()
                          << ", reason: " << address_->reason(Box::PostalCode).toStdString();
        }
    }
    EXPECT_GT(validated_, 0) << "no suggestion led to an address";
}

} // namespace
