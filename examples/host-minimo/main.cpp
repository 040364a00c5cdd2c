// The smallest host: a window whose boxes are completed and validated, and show which of them can be relied
// on.
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <cstdio>

#include "package/AmbCodPostales.h"
#include "trial.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    try {
        dbase::setDatabaseFolder("DB", argc > 1 ? argv[1] : "datos"); // the folder of the tables
        QWidget form;
        auto* layout = new QFormLayout(&form);
        const ambrel::AddressBoxes::Boxes boxes{.municipality = new QLineEdit,
                                                .province = new QLineEdit,
                                                .streetType = new QLineEdit,
                                                .street = new QLineEdit,
                                                .number = new QLineEdit,
                                                .postalCode = new QLineEdit};
        layout->addRow(QObject::tr("&Municipio"), boxes.municipality);
        layout->addRow(QObject::tr("&Provincia"), boxes.province);
        layout->addRow(QObject::tr("&Tipo de vía"), boxes.streetType);
        layout->addRow(QObject::tr("&Vía"), boxes.street);
        layout->addRow(QObject::tr("&Número"), boxes.number);
        layout->addRow(QObject::tr("&Código postal"), boxes.postalCode);

        ambrel::AddressBoxes address(boxes);
        QObject::connect(
            &address, &ambrel::AddressBoxes::stateChanged, &form, [&](ambrel::AddressBoxes::Box box) {
                const bool isWrong = address.state(box) == ambrel::AddressBoxes::State::NotValidated;
                boxes.at(box)->setToolTip(address.reason(box)); // says why its text cannot be relied on
                boxes.at(box)->setStyleSheet(isWrong ? QStringLiteral("color: #b26a00") : QString());
            });
        form.show();
        return QApplication::platformName() == "offscreen" ? typeAnAddress(boxes) : QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "host-minimo: %s\n", error.what());
        return 2;
    }
}
