// CQvUsedKeys_t_ remembers which data values have been used under which key
// in which module, so that a module can ask later whether a (module, key,
// value) triple is already taken, for example before it hands out a key.
//
// It is a three-level set of dictionaries: module number (kept as a number)
// -> lower-cased key -> lower-cased data value (item False; only presence
// counts). All dictionaries compare binary; letter case is ignored because
// both strings are lower-cased before every use. The object owns all three
// levels; the outer dictionary is created on first use.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once.
#ifndef QVGLOBAL_MODULES_CQV_USED_KEYS_H_
#define QVGLOBAL_MODULES_CQV_USED_KEYS_H_

#include <cstdint>
#include <memory>
#include <string>

#include "com/dictionary.h"
#include "com/object.h"

namespace qv {

class CQvUsedKeys_t_ : public Dispatchable<CQvUsedKeys_t_> {
 public:
  // Registers the triple; registering it again does nothing.
  void add(int32_t eModul, const std::string& sKey, const std::string& sData);
  // True when the triple has been registered.
  bool isIn(int32_t eModul, const std::string& sKey, const std::string& sData);

  static ClassInfo BuildClassInfo();

 private:
  // The outer dictionary, created when first needed.
  Dictionary& Modules();
  // A new key dictionary holding `data`; it becomes the working one.
  std::shared_ptr<Dictionary> NewKeyDictionary(const std::string& data);

  std::shared_ptr<Dictionary> modules_;
  // Working references to the module and key dictionaries last looked up.
  std::shared_ptr<Dictionary> module_keys_;
  std::shared_ptr<Dictionary> key_data_;
};

}  // namespace qv

#endif  // QVGLOBAL_MODULES_CQV_USED_KEYS_H_
