#include "core/script_value.h"

#include "core/errors.h"

namespace vorn {

ScriptValue ScriptValue::call(std::span<const ScriptValue> args) const {
  if (!object_) throw TypeError("'NoneType' object is not callable");
  return hooks_->call(object_, args);
}

}  // namespace vorn
