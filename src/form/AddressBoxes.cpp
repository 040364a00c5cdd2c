// Wiring the boxes of an address.
#include "form/AddressBoxes.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPointer>
#include <QShortcut>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "controller/ClasCodPostales.h"
#include "data/TableDefinitions.h"
#include "dialogs/common/EditMenu.h"
#include "dialogs/common/TypingRules.h"
#include "form/AddressLists.h"
#include "form/AddressOffers.h"
#include "form/AddressSuggestions.h"
#include "form/AddressValidation.h"
#include "form/PasteOffer.h"
#include "form/RecordBinding.h"
#include "form/SuggestionList.h"
#include "services/EventGuard.h"
#include "services/FocusEvents.h"
#include "services/KeyUpEvents.h"
#include "services/Rvarias.h"

namespace ambrel {
namespace {

using Box = AddressBoxes::Box;

/// How a box is typed into. The length allows a street type's whole name, and a number with its additions.
struct Typing {
    Box box;
    int length;
    Capitals capitals;
    bool completes;
    bool hasList;
};

constexpr std::array typings{
    Typing{Box::Municipality, municipalityNameWidth, Capitals::Yes, true, true},
    Typing{Box::Province, 21, Capitals::No, false, true},
    Typing{Box::StreetType, 15, Capitals::Yes, false, true},
    Typing{Box::Street, streetNameWidth, Capitals::Yes, true, true},
    Typing{Box::Number, TypingRules::anyLength, Capitals::No, false, false},
    Typing{Box::PostalCode, 5, Capitals::No, false, false},
};

bool hasTypingRules(const QLineEdit& edit) {
    return std::ranges::any_of(edit.children(),
                               [](const QObject* child) { return dynamic_cast<const TypingRules*>(child); });
}

} // namespace

/// Objects attached to the host's boxes, which may be destroyed before or after it.
struct AddressBoxes::Events {
    std::vector<QPointer<QLineEdit>> boxes;
    std::vector<QPointer<QObject>> helpers;
    QPointer<KeyUpEvents> municipalityKeys, streetKeys;
    std::vector<QPointer<SuggestionList>> lists; // among the helpers
    std::vector<QPointer<PasteOffer>> offers;    // likewise

    Events() = default;
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;
    ~Events() {
        for (const auto& box : boxes) {
            if (box) {
                FocusEvents::unwatch(box);
            }
        }
        for (const auto& helper : helpers) {
            delete helper.data();
        }
    }
};

QLineEdit* AddressBoxes::Boxes::at(Box box) const {
    const std::array all{municipality, province, streetType, street, number, postalCode};
    return all[static_cast<std::size_t>(box)];
}

AddressBoxes::AddressBoxes(const Boxes& boxes, QObject* parent)
    : QObject(parent), own_(std::make_unique<TClassCodPostales>()) {
    wire(boxes, *own_);
}

AddressBoxes::AddressBoxes(const Boxes& boxes, TClassCodPostales& controller, QObject* parent)
    : QObject(parent) {
    wire(boxes, controller);
}

AddressBoxes::~AddressBoxes() = default;

void AddressBoxes::wire(const Boxes& boxes, TClassCodPostales& controller) {
    Q_ASSERT(boxes.municipality);
    validation_ =
        std::make_unique<AddressValidation>(boxes, controller, [this](Box box) { Q_EMIT stateChanged(box); });
    lists_ = std::make_unique<AddressLists>(*validation_);
    suggestions_ = std::make_unique<AddressSuggestions>(*validation_);
    offers_ = std::make_unique<AddressOffers>(*validation_);
    events_ = std::make_unique<Events>();
    for (const Typing& typing : typings) {
        if (QLineEdit* edit = boxes.at(typing.box)) {
            fasten(*edit, typing.box, typing.completes);
            events_->helpers.emplace_back(new EditMenu(edit));
            if (!hasTypingRules(*edit)) { // the host's own come first
                events_->helpers.emplace_back(new TypingRules(edit, typing.length, typing.capitals));
            }
            if (typing.completes) {
                suggest(*edit, typing.box);
                if (boxes.street) {
                    offerPasted(*edit, typing.box);
                }
            }
            if (typing.hasList) {
                auto* f4 = new QShortcut(Qt::Key_F4, edit, nullptr, nullptr, Qt::WidgetShortcut);
                connect(f4, &QShortcut::activated, this, [this, box = typing.box] { openList(box); });
                events_->helpers.emplace_back(f4);
            }
        }
    }
}

void AddressBoxes::fasten(QLineEdit& edit, Box box, bool completes) {
    events_->boxes.emplace_back(&edit);
    // Not only typed changes: completers and screen readers set texts too, and nothing has looked those up.
    connect(&edit, &QLineEdit::textChanged, this, guarded([this, box] { validation_->changed(box); }));
    if (completes) {
        auto* keys =
            KeyUpEvents::watch(&edit, [this, box](std::uint16_t& key, Qt::KeyboardModifiers modifiers) {
                validation_->complete(box, key, modifiers);
            });
        events_->helpers.emplace_back(keys);
        (box == Box::Municipality ? events_->municipalityKeys : events_->streetKeys) = keys;
    }
    FocusEvents::watch(
        &edit, [&edit] { TomaFocoControl(&edit); },
        [this, box, &edit] {
            DejaFocoControl(&edit);
            leave(box);
        });
}

void AddressBoxes::suggest(QLineEdit& edit, Box box) {
    auto* list = new SuggestionList(
        &edit,
        [this, box](const QString& text, SuggestionList::Occasion occasion) {
            const bool isOffered = std::ranges::any_of(
                events_->offers, [](const auto& offer) { return offer && offer->isOpen(); });
            return isOffered ? SuggestionList::Rows() : suggestions_->rows(box, text, occasion);
        },
        [this, box](const SuggestionRow& row) { suggestions_->take(box, row); });
    events_->helpers.emplace_back(list);
    events_->lists.emplace_back(list);
}

void AddressBoxes::offerPasted(QLineEdit& edit, Box box) {
    auto* offer = new PasteOffer(
        &edit,
        [this, box](const QString& text, const QString& piece) { return offers_->offer(box, text, piece); },
        [this, box] {
            if (offers_->take(box)) {
                Q_EMIT addressTaken();
            }
        });
    events_->helpers.emplace_back(offer);
    events_->offers.emplace_back(offer);
}

void AddressBoxes::setPasteOffers(bool areWanted) { offers_->enable(areWanted); }

bool AddressBoxes::take(const JudgedAddress& judged) {
    bool isTaken = false;
    closeWindowsUnderBoxes();
    runGuarded([&] { isTaken = offers_->take(judged); });
    return isTaken;
}

void AddressBoxes::setSuggestions(std::shared_ptr<Suggestions> suggestions) {
    suggestions_->use(std::move(suggestions));
}

void AddressBoxes::leave(Box box) {
    for (const auto& keys : {events_->municipalityKeys, events_->streetKeys}) {
        if (keys && keys->parent() == validation_->boxes().at(box)) {
            keys->releasePending(); // fast typists press Tab before the last letter is up
        }
    }
    validation_->leave(box);
}

void AddressBoxes::setListButtons(const ListButtons& buttons) {
    const std::array all{
        std::pair{buttons.municipality, Box::Municipality}, std::pair{buttons.province, Box::Province},
        std::pair{buttons.streetType, Box::StreetType}, std::pair{buttons.street, Box::Street}};
    for (const auto& [button, box] : all) {
        if (button) {
            connect(button, &QAbstractButton::clicked, this, [this, wanted = box] { openList(wanted); });
        }
    }
}

void AddressBoxes::setRecord(RecordBinding& record) {
    validation_->setRecord(&record);
    connect(&record, &RecordBinding::rowShown, this, &AddressBoxes::takeStored);
    connect(&record, &QObject::destroyed, this, [this] { validation_->setRecord(nullptr); });
}

AddressBoxes::State AddressBoxes::state(Box box) const { return validation_->state(box); }

QString AddressBoxes::reason(Box box) const { return validation_->reason(box); }

TClassCodPostales& AddressBoxes::controller() const { return validation_->controller(); }

void AddressBoxes::settle() {
    for (const Typing& typing : typings) {
        if (const QLineEdit* edit = validation_->boxes().at(typing.box); edit && edit->hasFocus()) {
            runGuarded([&] { leave(typing.box); });
        }
    }
}

/// They are about the address that was there before.
void AddressBoxes::closeWindowsUnderBoxes() {
    for (const auto& list : events_->lists) {
        if (list) {
            list->close();
        }
    }
    for (const auto& offer : events_->offers) {
        if (offer) {
            offer->close();
        }
    }
}

void AddressBoxes::takeStored() {
    closeWindowsUnderBoxes();
    runGuarded([this] { validation_->takeStored(); });
}

void AddressBoxes::openList(Box box) {
    if (validation_->boxes().at(box)) {
        runGuarded([&] { lists_->open(box); });
    }
}

void AddressBoxes::openStreetCard() {
    runGuarded([this] { lists_->openCard(); });
}

} // namespace ambrel
