// Connects the controls of the two MUNICIPI lists, which bear the same names in both, to their handlers.
#pragma once

#include <QLineEdit>
#include <QPushButton>

#include "dialogs/common/DataGrid.h"
#include "dialogs/common/FocusHelp.h"
#include "dialogs/common/FormEvents.h"
#include "services/EventGuard.h"
#include "services/KeyUpEvents.h"

namespace ambrel {

/// Friend of both lists: the names of their controls and handlers are fixed, and private.
struct MunicipalityListWiring {
    template<class List>
    static void connectControls(List& list) {
        auto& ui = *list.ui_;
        new FormEvents(
            list, [&list] { list.FormShow(); }, [&list] { list.FormResize(); });
        watchEdit(list, ui.ECODINE, &List::ECODINEEnter);
        watchEdit(list, ui.ECODPOSTAL, &List::ECODPOSTALEnter);
        watchEdit(list, ui.ENOMBRE, &List::ENOMBREEnter);
        list.help_->watchButton(ui.BBAceptar);
        list.help_->watchButton(ui.BBCancelar);
        QObject::connect(ui.DBGMUNICIPI, &DataGrid::titleClicked, &list,
                         guarded([&list](int column) { list.DBGMUNICIPITitleClick(column); }));
        QObject::connect(ui.DBGMUNICIPI, &DataGrid::rowDoubleClicked, &list,
                         guarded([&list] { list.DBGMUNICIPIDblClick(); }));
        QObject::connect(ui.BBAceptar, &QPushButton::clicked, &list,
                         guarded([&list] { list.BBAceptarClick(); }));
        QObject::connect(ui.BBCancelar, &QPushButton::clicked, &list,
                         guarded([&list] { list.BBCancelarClick(); }));
    }

private:
    template<class List>
    static void watchEdit(List& list, QLineEdit* edit, void (List::*enter)()) {
        list.help_->watchEdit(
            edit, [&list, enter] { (list.*enter)(); }, [&list, edit] { list.Dejafoco(edit); });
        KeyUpEvents::watch(edit, [&list, edit](std::uint16_t& key, Qt::KeyboardModifiers) {
            list.ECODINEKeyUp(*edit, key);
        });
    }
};

} // namespace ambrel
