// QvProperties is the properties object of the suite's central library: it
// formats one value as a physical quantity of the property catalogue
// (property_catalog.h). A caller selects the quantity by its reference
// ("001/Temperatur"), assigns the value in the catalogue's unit and reads
// the value as text in the display unit, and the unit's text, in the
// object's language (German unless set to English).
//
//   auto p = std::make_shared<QvProperties>();
//   p->SetProperty("001/Temperatur");   // Kelvin in, degrees Celsius out
//   p->SetValue(293.15);
//   p->Text();       // "20,0"
//   p->UnitText();   // "°C"
//
// Created by name as "QvCentral10.QvProperties". The object keeps the
// catalogue it selected from alive. Errors: selecting raises the catalogue's
// errors (unknown or invalid reference, a broken catalogue file); Text and
// UnitText without a selected property raise 91 "Object variable or With
// block variable not set"; a value that is no number raises 13.
// Threads: an object is used on one thread at a time.
#ifndef QVGLOBAL_CENTRAL_QV_PROPERTIES_H_
#define QVGLOBAL_CENTRAL_QV_PROPERTIES_H_

#include <memory>
#include <string>

#include "central/property_catalog.h"
#include "central/qv_language.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv::central {

class QvProperties : public Dispatchable<QvProperties> {
 public:
  QvProperties() = default;
  // An object that selects from `catalog` instead of the default catalogue.
  explicit QvProperties(std::shared_ptr<const PropertyCatalog> catalog)
      : catalog_(std::move(catalog)) {}

  // Selects the quantity named by `reference`.
  void SetProperty(const std::string& reference);
  // The selected quantity's reference text; "" when none is selected.
  std::string Property() const;

  void SetValue(const Variant& value) { value_ = value.ToDouble(); }
  double Value() const { return value_; }

  QvLanguage_t_ Language() const { return language_; }
  void SetLanguage(QvLanguage_t_ language) { language_ = language; }

  std::string Text() const;
  std::string UnitText() const;
  // The selected entry, or nullptr.
  const PropertyDef* selected() const { return selected_; }

  static ClassInfo BuildClassInfo();

 private:
  const PropertyDef& Selected() const;

  std::shared_ptr<const PropertyCatalog> catalog_;
  const PropertyDef* selected_ = nullptr;
  double value_ = 0;
  QvLanguage_t_ language_ = qvlNoLanguage;
};

}  // namespace qv::central

#endif  // QVGLOBAL_CENTRAL_QV_PROPERTIES_H_
