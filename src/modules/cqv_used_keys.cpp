#include "modules/cqv_used_keys.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/text.h"
#include "com/variant.h"

namespace qv {

Dictionary& CQvUsedKeys_t_::Modules() {
  if (!modules_) modules_ = std::make_shared<Dictionary>();
  return *modules_;
}

std::shared_ptr<Dictionary> CQvUsedKeys_t_::NewKeyDictionary(
    const std::string& data) {
  key_data_ = std::make_shared<Dictionary>();
  key_data_->Add(data, false);
  return key_data_;
}

void CQvUsedKeys_t_::add(int32_t eModul, const std::string& sKey,
                         const std::string& sData) {
  const std::string key = text::LCase(sKey);
  const std::string data = text::LCase(sData);
  Dictionary& modules = Modules();
  const Variant modul(eModul);
  if (!modules.Exists(modul)) {
    module_keys_ = std::make_shared<Dictionary>();
    module_keys_->Add(key, NewKeyDictionary(data));
    modules.Add(modul, module_keys_);
    return;
  }
  module_keys_ = modules.Item(modul).ToObjectAs<Dictionary>();
  if (!module_keys_->Exists(key)) {
    module_keys_->Add(key, NewKeyDictionary(data));
    return;
  }
  key_data_ = module_keys_->Item(key).ToObjectAs<Dictionary>();
  if (!key_data_->Exists(data)) key_data_->Add(data, false);
}

bool CQvUsedKeys_t_::isIn(int32_t eModul, const std::string& sKey,
                          const std::string& sData) {
  // Find, not Item: a lookup must not add the missing levels.
  const Variant* module_entry = Modules().Find(Variant(eModul));
  if (module_entry == nullptr) return false;
  module_keys_ = module_entry->ToObjectAs<Dictionary>();
  const Variant* key_entry = module_keys_->Find(text::LCase(sKey));
  if (key_entry == nullptr) return false;
  key_data_ = key_entry->ToObjectAs<Dictionary>();
  return key_data_->Exists(text::LCase(sData));
}

ClassInfo CQvUsedKeys_t_::BuildClassInfo() {
  return ClassBuilder<CQvUsedKeys_t_>("CQvUsedKeys_t_")
      .Method("add", &CQvUsedKeys_t_::add)
      .Method("isIn", &CQvUsedKeys_t_::isIn)
      .Build();
}

QV_REGISTER_CLASS(CQvUsedKeys_t_);

}  // namespace qv
