// Helpers for the host's toolbar objects, which the library reaches by
// member name only. A collection of the toolbar ("Bands", "Tools") is an
// object with "Count" and "Item(key)", where the key is a name or a
// 0-based position, as the toolbar control numbers them.
//
// Errors: a missing object raises 91; whatever the host objects raise
// passes unchanged. Threads: no state; called on the caller's thread.
#ifndef QVGLOBAL_SHELL_INTERNAL_HOST_COLLECTION_H_
#define QVGLOBAL_SHELL_INTERNAL_HOST_COLLECTION_H_

#include <string_view>
#include <vector>

#include "com/object.h"
#include "com/variant.h"

namespace qv::host {

// `object` itself; raises 91 when it is Nothing.
const ObjectPtr& Require(const ObjectPtr& object);

// The object a host member returns; raises 91 when it returns none.
ObjectPtr GetObject(const ObjectPtr& owner, std::string_view member,
                    std::vector<Variant> args = {});

// owner.<collection>.Item(key).
ObjectPtr ItemOf(const ObjectPtr& owner, std::string_view collection,
                 const Variant& key);

// Every item of owner.<collection>, from position 0 to Count - 1.
std::vector<ObjectPtr> ItemsOf(const ObjectPtr& owner,
                               std::string_view collection);

}  // namespace qv::host

#endif  // QVGLOBAL_SHELL_INTERNAL_HOST_COLLECTION_H_
