#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/common/DataGrid.h"
#include "dialogs/common/FormKeys.h"
#include "dialogs/common/TypingRules.h"
#include "package/AmbCodPostales.h"

// A list of the host's own that looks and behaves like the package's.
class StreetTypeList : public QDialog {
public:
    explicit StreetTypeList(QWidget* owner) : QDialog(owner) {
        types_.tbTipo_Via.setTag("CODIGO");
        types_.tbTipo_Via.open();
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(search_);
        layout->addWidget(grid_);
        auto* close = new QPushButton(tr("&Salir"), this);
        layout->addWidget(close);
        new ambrel::TypingRules(search_, 2, ambrel::Capitals::Yes);
        new ambrel::FormKeys(*this, *close, [this](std::uint16_t key, Qt::KeyboardModifiers) {
            return ambrel::enterMovesOn(*this, key);
        });
        grid_->setColumns({{"CODIGO", tr("Tipo"), 60}, {"NOMBRE", tr("Nombre"), 200}});
        grid_->setDataSource(&types_.dsTipo_Via);
        ambrel::KeyUpEvents::watch(search_, [this](std::uint16_t&, Qt::KeyboardModifiers) {
            if (const auto code = ambrel::toWindows1252(search_->text())) {
                static_cast<void>(TBBusca(types_.tbTipo_Via, {{"CODIGO", *code}}, nearestSearch));
            }
        });
        connect(close, &QPushButton::clicked, this, &QDialog::reject);
    }

private:
    TDMVias types_;
    QLineEdit* search_ = new QLineEdit(this);
    ambrel::DataGrid* grid_ = new ambrel::DataGrid(this);
};

void showStreetTypes(QWidget* owner) { StreetTypeList(owner).exec(); }
