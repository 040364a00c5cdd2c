// Shows the progress of a run, and its outcome.
#include "import/ProvinceRun.h"

#include <QBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>
#include <utility>

namespace ambrel {
namespace {

constexpr std::array<const char*, 7> endTexts{
    "", // reported before the others
    "Sin respuesta válida",
    "Sin archivar",
    "Con varios códigos postales",
    "Sin municipio elegido",
    "Ilegibles",
    "Con error",
};

QString counted(const QString& what, int count) {
    return count ? QStringLiteral(" %1: %2.").arg(what).arg(count) : QString();
}

} // namespace

ProvinceRun::ProvinceRun(QLabel& label, ProvinceDeed deed, QString province, int municipalities)
    : label_(label), bar_(std::make_unique<QProgressBar>(label.parentWidget())), deed_(deed),
      province_(std::move(province)), total_(municipalities) {
    bar_->setObjectName(QStringLiteral("PBProvincia"));
    bar_->setAccessibleName(QStringLiteral("Municipios de la provincia"));
    bar_->setAlignment(Qt::AlignCenter);
    bar_->setMinimumWidth(label_.minimumWidth());
    auto& layout = dynamic_cast<QBoxLayout&>(*label_.parentWidget()->layout());
    layout.insertWidget(layout.indexOf(&label_), bar_.get(), 1);
    label_.hide();
    show();
    bar_->show();
}

ProvinceRun::~ProvinceRun() {
    finishCurrent();
    bar_.reset();
    label_.setText(report());
    label_.show();
}

void ProvinceRun::begin() {
    finishCurrent();
    ++begun_;
    total_ = std::max(total_, begun_); // another workstation may have filed more meanwhile
    end_ = MunicipalityEnd::Failed;
    clock_.start();
    show();
}

void ProvinceRun::finishCurrent() {
    if (begun_ == 0) {
        return;
    }
    ++ends_[static_cast<std::size_t>(end_)];
    if (clock_.isValid()) {
        time_.addStep(std::chrono::milliseconds(clock_.elapsed()));
    }
}

void ProvinceRun::show() {
    const int done = std::max(begun_ - 1, 0);
    QString text = QStringLiteral("%1 de %2").arg(begun_).arg(total_);
    if (const QString left = time_.text(total_ - done); !left.isEmpty()) {
        text += QStringLiteral(" · ") + left;
    }
    bar_->setMaximum(std::max(total_, 1));
    bar_->setValue(done);
    bar_->setFormat(text);
}

QString ProvinceRun::report() const {
    QString text = province_.isEmpty() ? QString() : province_ + QStringLiteral(". ");
    text += (deed_ == ProvinceDeed::Filing ? QStringLiteral("Municipios archivados: %1 de %2.")
                                           : QStringLiteral("Municipios guardados: %1 de %2."))
                .arg(ends_[static_cast<std::size_t>(MunicipalityEnd::Done)])
                .arg(total_);
    if (deed_ == ProvinceDeed::Saving) {
        text += QStringLiteral(" Calles nuevas: %1.").arg(streets_);
    }
    for (std::size_t end = 1; end < ends_.size(); ++end) {
        text += counted(QString::fromUtf8(endTexts[end]), ends_[end]);
    }
    return text + counted(QStringLiteral("Sin hacer"), total_ - begun_);
}

} // namespace ambrel
