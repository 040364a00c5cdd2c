// Stores streets together.
#include "controller/StreetGroup.h"

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "services/EventGuard.h"

namespace ambrel {

StreetGroup::StreetGroup(TClassCodPostales& controller)
    : controller_(controller),
      scope_(controller.DM->tbPostal.openTable(), dbase::WriteScope::Writing::Together) {
    controller_.group_ = this;
}

StreetGroup::~StreetGroup() { controller_.group_ = nullptr; }

void StreetGroup::post(dbase::Durability durability) {
    TDMCodPostales& tables = *controller_.DM;
    if (!keys_) {
        keys_.emplace(tables.tbPostal);
    }
    if (keys_->isRefused()) {
        throw SilentAbort();
    }
    keys_->giveKey(tables.tbPostalCODIGO1);
    tables.tbPostal.post(durability);
}

} // namespace ambrel
