#pragma once
// A handle to a value that belongs to the script side (a Python object), held by the
// core without knowing Python. The binding installs the hooks that count references,
// print, test truth and call; the core only copies, stores and hands the handle back.
// An empty handle is the script's None.
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <utility>

namespace vorn {

class ScriptValue {
 public:
  // Operations on the script object behind a handle, supplied by the binding.
  struct Hooks {
    void (*incref)(void* object);
    void (*decref)(void* object);
    std::string (*str)(void* object);
    bool (*truthy)(void* object);
    bool (*equals)(void* a, void* b);
    ScriptValue (*call)(void* callable, std::span<const ScriptValue> args);
  };

  // Installs the hooks; must happen before the first handle is made.
  static void install(const Hooks* hooks) noexcept { hooks_ = hooks; }
  static const Hooks* hooks() noexcept { return hooks_; }

  ScriptValue() noexcept = default;
  // Takes over one reference that the caller owns.
  static ScriptValue adopt(void* object) noexcept {
    ScriptValue v;
    v.object_ = object;
    return v;
  }
  // Adds a reference of its own.
  static ScriptValue borrow(void* object) noexcept {
    if (object && hooks_) hooks_->incref(object);
    return adopt(object);
  }

  ScriptValue(const ScriptValue& other) noexcept : object_(other.object_) {
    if (object_) hooks_->incref(object_);
  }
  ScriptValue(ScriptValue&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ScriptValue& operator=(ScriptValue other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ScriptValue() { reset(); }

  void reset() noexcept {
    if (object_) hooks_->decref(std::exchange(object_, nullptr));
  }

  bool is_none() const noexcept { return object_ == nullptr; }
  // The script's truth value; None is false.
  bool truthy() const { return object_ && hooks_->truthy(object_); }
  // The script's str(); "None" for an empty handle.
  std::string str() const { return object_ ? hooks_->str(object_) : std::string("None"); }
  // Calls the value with the given arguments; calling None is a TypeError.
  ScriptValue call(std::span<const ScriptValue> args) const;
  ScriptValue call(std::initializer_list<ScriptValue> args) const {
    return call(std::span<const ScriptValue>(args.begin(), args.size()));
  }

  // The raw object pointer, for the binding only.
  void* get() const noexcept { return object_; }

  friend bool operator==(const ScriptValue& a, const ScriptValue& b) {
    if (a.object_ == b.object_) return true;
    if (!a.object_ || !b.object_) return false;
    return hooks_->equals(a.object_, b.object_);
  }

 private:
  void* object_ = nullptr;
  static inline const Hooks* hooks_ = nullptr;
};

// A callback that the core calls back into the host with; the binding wraps script
// callables into it, C++ hosts pass lambdas.
template <class Signature>
using ScriptCallback = std::function<Signature>;

}  // namespace vorn
