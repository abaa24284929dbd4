#pragma once
// Lifetime of engine objects that scripts also hold (nodes, the scene, texts).
//
// The model, in one place:
//   * An object lives in a std::shared_ptr. A script sees it through one script object
//     (its "twin"), made the first time the object crosses into the script and recorded
//     here by the binding (attach_script_object). The same twin is handed back every
//     time, so identity and the script's own attributes and subclass hold.
//   * Every engine-side strong reference is a Ref<T> (or a slot of an OwnedList<T>,
//     which is a vector of the same references). Each such reference counts as one
//     owner, and while the object has a twin, each owner holds one script reference
//     to the twin. So the twin, with its attributes and its class, lives exactly as long
//     as the engine or the script holds the object; when the last engine reference
//     goes, the twin falls back to ordinary script lifetime, and the twin's own
//     reference to the object (the binding's holder) keeps the object alive as long as
//     the script wants it.
//   * Back references (parent, sceneInstance, a camera's target, the gizmo's node) are
//     std::weak_ptr and never owners.
//   * The script's cycle collector sees through the engine: the twin of an object
//     reports, for each of its owners' references it holds (visit_script_refs), the
//     twins of the objects it owns and the script values it stores. It does so only
//     while every holder of the object is known (the twin and its owners): a holder the
//     collector cannot see (a C++ local in a running frame, a host's own shared_ptr)
//     makes the object count as reachable, which is always safe.
//   * Raw std::shared_ptr copies are for temporaries and C++ hosts; a long-lived field
//     that owns an engine object is a Ref.
#include <cstdint>
#include <memory>
#include <utility>

#include "core/script_value.h"

namespace vorn {

// Called for every script object an engine object holds a reference to; a non-zero
// answer stops the walk and is returned.
using ScriptRefVisit = int (*)(void* scriptObject, void* context);

class ScriptOwned {
 public:
  ScriptOwned() = default;
  ScriptOwned(const ScriptOwned&) = delete;
  ScriptOwned& operator=(const ScriptOwned&) = delete;
  virtual ~ScriptOwned() = default;

  // ---- The twin (binding only) ----
  // Records the twin once it is fully built; the current owners take their references.
  void attach_script_object(void* twin) noexcept {
    twin_ = twin;
    if (const auto* h = ScriptValue::hooks())
      for (int i = 0; i < ownerCount_; ++i) h->incref(twin);
  }
  // The twin is being destroyed: it can no longer be handed out.
  void detach_script_object(void* twin) noexcept {
    if (twin_ == twin) twin_ = nullptr;
  }
  void* script_object() const noexcept { return twin_; }

  // ---- Owners (Ref and OwnedList) ----
  void retain_owner() noexcept {
    ++ownerCount_;
    if (twin_) ScriptValue::hooks()->incref(twin_);
  }
  // May end the twin, and with it the twin's reference to this object: callers hold
  // their own shared_ptr across the call.
  void release_owner() noexcept {
    if (ownerCount_ <= 0) return;
    --ownerCount_;
    if (twin_) ScriptValue::hooks()->decref(twin_);
  }
  int owner_count() const noexcept { return ownerCount_; }

  // ---- What the cycle collector sees ----
  // Strong references to this object right now (shared_ptr use count).
  virtual long holder_count() const noexcept = 0;
  // Visits every script object this object holds a counted reference to: stored
  // script values, and the twin of each owned object once per owning reference.
  virtual int visit_script_refs(ScriptRefVisit /*visit*/, void* /*context*/) const { return 0; }
  // Drops everything visit_script_refs reports: the collector found this object
  // unreachable. May run script code; the object must stay usable (empty) afterwards.
  virtual void clear_script_refs() {}

 protected:
  // Visits the twin behind an owning reference, when there is one.
  static int visit_owned(const ScriptOwned* owned, ScriptRefVisit visit, void* context) {
    return owned && owned->twin_ ? visit(owned->twin_, context) : 0;
  }
  static int visit_value(const ScriptValue& value, ScriptRefVisit visit, void* context) {
    return value.is_none() ? 0 : visit(value.get(), context);
  }

 private:
  void* twin_ = nullptr;
  int ownerCount_ = 0;
};

// The owning handle: a shared_ptr that counts as one owner of its object. It keeps the
// object's ScriptOwned side beside the pointer, so that fields of a type that is only
// declared (a global Ref<Vorn_3Dcene>) can be destroyed and visited anywhere.
template <class T>
class Ref {
 public:
  Ref() noexcept = default;
  Ref(std::nullptr_t) noexcept {}
  template <class U>
  Ref(std::shared_ptr<U> p) noexcept : ptr_(std::move(p)), owner_(ptr_.get()) {
    if (owner_) owner_->retain_owner();
  }
  Ref(const Ref& other) noexcept : ptr_(other.ptr_), owner_(other.owner_) {
    if (owner_) owner_->retain_owner();
  }
  Ref(Ref&& other) noexcept
      : ptr_(std::exchange(other.ptr_, nullptr)), owner_(std::exchange(other.owner_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(ptr_, other.ptr_);
    std::swap(owner_, other.owner_);
    return *this;  // the old value is released as `other` goes
  }
  ~Ref() { reset(); }

  void reset() noexcept {
    // The object stays alive through `held` while its twin may be dropped.
    std::shared_ptr<T> held = std::exchange(ptr_, nullptr);
    if (ScriptOwned* owner = std::exchange(owner_, nullptr)) owner->release_owner();
  }

  const std::shared_ptr<T>& ptr() const noexcept { return ptr_; }
  operator const std::shared_ptr<T>&() const noexcept { return ptr_; }
  template <class U>
  operator std::shared_ptr<U>() const noexcept {
    return ptr_;
  }
  T* get() const noexcept { return ptr_.get(); }
  T* operator->() const noexcept { return ptr_.get(); }
  T& operator*() const noexcept { return *ptr_; }
  explicit operator bool() const noexcept { return static_cast<bool>(ptr_); }

  // Visits the twin this reference holds, if any.
  int visit(ScriptRefVisit visit, void* context) const {
    return owner_ && owner_->script_object() ? visit(owner_->script_object(), context) : 0;
  }

 private:
  std::shared_ptr<T> ptr_;
  ScriptOwned* owner_ = nullptr;
};

}  // namespace vorn
