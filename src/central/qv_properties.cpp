#include "central/qv_properties.h"

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"

namespace qv::central {

void QvProperties::SetProperty(const std::string& reference) {
  if (!catalog_) catalog_ = PropertyCatalog::Default();
  selected_ = &catalog_->Find(reference);
}

std::string QvProperties::Property() const {
  return selected_ ? selected_->Reference() : std::string();
}

const PropertyDef& QvProperties::Selected() const {
  if (!selected_) throw Error::Runtime(err::kObjectVariableNotSet);
  return *selected_;
}

std::string QvProperties::Text() const {
  return Selected().Format(value_, language_);
}

std::string QvProperties::UnitText() const {
  return Selected().UnitText(language_);
}

ClassInfo QvProperties::BuildClassInfo() {
  using P = QvProperties;
  return ClassBuilder<P>("QvProperties")
      .Get("Property", &P::Property)
      .Let("Property", &P::SetProperty)
      .Get("Value", &P::Value)
      .Let("Value", &P::SetValue)
      .Get("Language", &P::Language)
      .Let("Language", &P::SetLanguage)
      .Get("Text", &P::Text)
      .Get("UnitText", &P::UnitText)
      .Build();
}

namespace {
[[maybe_unused]] const bool kRegistered = RegisterClass(
    "QvCentral10.QvProperties",
    [] { return ObjectPtr(std::make_shared<QvProperties>()); },
    QvProperties::StaticClassInfo());
}  // namespace

}  // namespace qv::central
