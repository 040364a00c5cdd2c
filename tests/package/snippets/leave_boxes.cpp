#include <QFormLayout>
#include <QLineEdit>

#include "package/AmbCodPostales.h"

constexpr bool mayAsk = true;

class MunicipalityForm : public QWidget {
public:
    MunicipalityForm() {
        auto* layout = new QFormLayout(this);
        layout->addRow(tr("&Municipio"), box_);
        layout->addRow(tr("&Provincia"), province_);
        postal_.Padre = this; // owner of the lists that the controller opens
        ambrel::FocusEvents::watch(
            box_, [this] { TomaFocoControl(box_); },
            [this] {
                DejaFocoControl(box_);
                leave();
            });
        // A text that the user has changed is not validated until a handler validates it again.
        connect(box_, &QLineEdit::textEdited, this, [this] { ambrel::setTag(*box_, 0); });
    }
    // The controller is destroyed before the boxes, and losing the focus counts as leaving.
    ~MunicipalityForm() override { ambrel::FocusEvents::unwatch(box_); }

private:
    void leave() {
        QString province = QStringLiteral(" "); // some text: province is wanted
        QString postalCode;                     // none: postal code is not
        postal_.ExitMunicipi(box_, province, postalCode, mayAsk);
        if (ambrel::tagOf(*box_) != 0) {
            province_->setText(province);
        }
    }

    TClassCodPostales postal_{this};
    QLineEdit* box_ = new QLineEdit(this);
    QLineEdit* province_ = new QLineEdit(this);
};

QWidget* newMunicipalityForm() { return new MunicipalityForm; }
