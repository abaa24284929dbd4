#include "mesh/model_plan_wire.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace vorn {
namespace {

class Writer {
 public:
  template <typename T>
    requires std::is_trivially_copyable_v<T>
  void Put(const T& value) {
    Bytes(&value, sizeof value);
  }
  void Put(const std::string& s) {
    Put<std::uint64_t>(s.size());
    Bytes(s.data(), s.size());
  }
  template <typename T>
    requires std::is_trivially_copyable_v<T>
  void Put(const std::vector<T>& items) {
    Put<std::uint64_t>(items.size());
    Bytes(items.data(), items.size() * sizeof(T));
  }
  void Put(const std::vector<std::string>& items) {
    Put<std::uint64_t>(items.size());
    for (const std::string& s : items) Put(s);
  }
  std::string Take() { return std::move(out_); }

 private:
  void Bytes(const void* data, std::size_t size) { out_.append(static_cast<const char*>(data), size); }
  std::string out_;
};

// Every read is checked against the bytes left; a count is checked before anything
// is allocated for it.
class Reader {
 public:
  explicit Reader(std::span<const char> in) : in_(in) {}

  template <typename T>
    requires std::is_trivially_copyable_v<T>
  bool Get(T& value) {
    return Bytes(&value, sizeof value);
  }
  // A flag is one byte, 0 or 1; any other byte is no flag.
  bool Get(bool& flag) {
    std::uint8_t byte = 2;
    if (!Bytes(&byte, 1) || byte > 1) return false;
    flag = byte == 1;
    return true;
  }
  bool Get(std::string& s) {
    std::uint64_t n = 0;
    if (!Get(n) || n > Left()) return false;
    s.assign(in_.data() + at_, n);
    at_ += n;
    return true;
  }
  template <typename T>
    requires std::is_trivially_copyable_v<T>
  bool Get(std::vector<T>& items) {
    std::uint64_t n = 0;
    if (!Get(n) || n > Left() / sizeof(T)) return false;
    items.resize(n);
    return Bytes(items.data(), n * sizeof(T));
  }
  bool Get(std::vector<std::string>& items) {
    std::uint64_t n = 0;
    if (!GetCount(n)) return false;
    items.resize(n);
    for (std::string& s : items)
      if (!Get(s)) return false;
    return true;
  }
  // A count of items that take at least one byte each.
  bool GetCount(std::uint64_t& n) { return Get(n) && n <= Left(); }
  bool AtEnd() const { return at_ == in_.size(); }

 private:
  std::size_t Left() const { return in_.size() - at_; }
  bool Bytes(void* data, std::size_t size) {
    if (size > Left()) return false;
    if (size > 0) std::memcpy(data, in_.data() + at_, size);
    at_ += size;
    return true;
  }
  std::span<const char> in_;
  std::size_t at_ = 0;
};

void PutMatrix(Writer& w, const Matrix4d& m) { w.Put(m.m); }
bool GetMatrix(Reader& r, Matrix4d& m) { return r.Get(m.m); }

void PutSubmesh(Writer& w, const ModelSubmeshPlan& s) {
  w.Put(s.submeshName);
  w.Put(s.withNormal);
  w.Put(s.withTexUV);
  w.Put(s.withSkin);
  w.Put(s.vertices);
  w.Put(s.indices);
  w.Put(s.textureFiles);
  w.Put<std::uint64_t>(s.images.size());
  for (const GlbImage& image : s.images) {
    w.Put(image.pixels ? *image.pixels : std::vector<std::uint8_t>{});
    w.Put(image.format);
    w.Put(image.width);
    w.Put(image.height);
  }
  w.Put<std::uint64_t>(s.clusters.size());
  for (const FbxCluster& c : s.clusters) {
    w.Put(c.name);
    w.Put(c.node);
    PutMatrix(w, c.meshToBone);
  }
}

bool GetSubmesh(Reader& r, ModelSubmeshPlan& s) {
  std::uint64_t images = 0, clusters = 0;
  if (!r.Get(s.submeshName) || !r.Get(s.withNormal) || !r.Get(s.withTexUV) || !r.Get(s.withSkin) ||
      !r.Get(s.vertices) || !r.Get(s.indices) || !r.Get(s.textureFiles) || !r.GetCount(images))
    return false;
  s.images.resize(images);
  for (GlbImage& image : s.images) {
    std::vector<std::uint8_t> pixels;
    if (!r.Get(pixels) || !r.Get(image.format) || !r.Get(image.width) || !r.Get(image.height)) return false;
    image.pixels = std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels));
  }
  if (!r.GetCount(clusters)) return false;
  s.clusters.resize(clusters);
  for (FbxCluster& c : s.clusters)
    if (!r.Get(c.name) || !r.Get(c.node) || !GetMatrix(r, c.meshToBone)) return false;
  return true;
}

void PutTree(Writer& w, const FbxSceneTree& tree) {
  w.Put(tree.frameRate);
  w.Put<std::uint64_t>(tree.nodes.size());
  for (const FbxSceneNode& n : tree.nodes) {
    w.Put(n.name);
    w.Put(n.parent);
    w.Put(n.T.v);
    w.Put(n.Q.v);
    w.Put(n.S.v);
    PutMatrix(w, n.local);
  }
}

bool GetTree(Reader& r, FbxSceneTree& tree) {
  std::uint64_t n = 0;
  if (!r.Get(tree.frameRate) || !r.GetCount(n)) return false;
  tree.nodes.resize(n);
  for (FbxSceneNode& node : tree.nodes)
    if (!r.Get(node.name) || !r.Get(node.parent) || !r.Get(node.T.v) || !r.Get(node.Q.v) || !r.Get(node.S.v) ||
        !GetMatrix(r, node.local))
      return false;
  return true;
}

void PutAction(Writer& w, const MeshAction& action) {
  w.Put<std::uint64_t>(action.size());
  for (const auto& [bone, channels] : action) {
    w.Put(bone);
    w.Put<std::uint64_t>(channels.size());
    for (const ActionChannel& c : channels) {
      w.Put(c.path);
      w.Put<std::uint64_t>(c.samples.size());
      for (const ActionSample& s : c.samples) {
        w.Put(s.time);
        w.Put(s.value);
      }
    }
  }
}

bool GetAction(Reader& r, MeshAction& action) {
  std::uint64_t bones = 0;
  if (!r.GetCount(bones)) return false;
  for (std::uint64_t b = 0; b < bones; ++b) {
    int bone = 0;
    std::uint64_t count = 0;
    if (!r.Get(bone) || !r.GetCount(count)) return false;
    std::vector<ActionChannel> channels(count);
    for (ActionChannel& c : channels) {
      std::uint64_t samples = 0;
      if (!r.Get(c.path) || !r.GetCount(samples)) return false;
      c.samples.resize(samples);
      for (ActionSample& s : c.samples)
        if (!r.Get(s.time) || !r.Get(s.value)) return false;
    }
    action.set(bone, std::move(channels));
  }
  return true;
}

void PutPlan(Writer& w, const ModelPlan& plan) {
  w.Put(plan.withNormal);
  w.Put(plan.withTexUV);
  w.Put(plan.withSkin);
  w.Put<std::uint64_t>(plan.submeshes.size());
  for (const ModelSubmeshPlan& s : plan.submeshes) PutSubmesh(w, s);
  w.Put(static_cast<bool>(plan.tree));
  if (plan.tree) PutTree(w, *plan.tree);
  w.Put<std::uint64_t>(plan.actions.size());
  for (const auto& [name, action] : plan.actions) {
    w.Put(name);
    PutAction(w, action);
  }
  w.Put(plan.first.has_value());
  if (plan.first) w.Put(*plan.first);
}

bool GetPlan(Reader& r, ModelPlan& plan) {
  std::uint64_t submeshes = 0, actions = 0;
  bool hasTree = false, hasFirst = false;
  if (!r.Get(plan.withNormal) || !r.Get(plan.withTexUV) || !r.Get(plan.withSkin) || !r.GetCount(submeshes))
    return false;
  plan.submeshes.resize(submeshes);
  for (ModelSubmeshPlan& s : plan.submeshes)
    if (!GetSubmesh(r, s)) return false;
  if (!r.Get(hasTree)) return false;
  if (hasTree) {
    auto tree = std::make_shared<FbxSceneTree>();
    if (!GetTree(r, *tree)) return false;
    plan.tree = std::move(tree);
  }
  if (!r.GetCount(actions)) return false;
  for (std::uint64_t a = 0; a < actions; ++a) {
    std::string name;
    MeshAction action;
    if (!r.Get(name) || !GetAction(r, action)) return false;
    plan.actions.set(name, std::move(action));
  }
  if (!r.Get(hasFirst)) return false;
  if (hasFirst) {
    ModelFirstAnimation first;
    if (!r.Get(first)) return false;
    plan.first = first;
  }
  return true;
}

}  // namespace

std::string EncodeImportRequest(const ImportRequest& request) {
  Writer w;
  w.Put(request.fromMemory);
  w.Put(request.split);
  w.Put(request.swapyz);
  w.Put(request.path);
  w.Put(request.hint);
  w.Put(request.bytes);
  return w.Take();
}

std::optional<ImportRequest> DecodeImportRequest(std::span<const char> bytes) {
  Reader r(bytes);
  ImportRequest out;
  if (!r.Get(out.fromMemory) || !r.Get(out.split) || !r.Get(out.swapyz) || !r.Get(out.path) || !r.Get(out.hint) ||
      !r.Get(out.bytes) || !r.AtEnd())
    return std::nullopt;
  if (out.split != ModelSplit::PerMeshNode && out.split != ModelSplit::PerMesh) return std::nullopt;
  return out;
}

std::string EncodeImportOutcome(const ImportOutcome& outcome) {
  Writer w;
  w.Put(outcome.lines);
  w.Put(outcome.failure);
  w.Put(outcome.failureText);
  w.Put(outcome.plan.has_value());
  if (outcome.plan) PutPlan(w, *outcome.plan);
  return w.Take();
}

std::optional<ImportOutcome> DecodeImportOutcome(std::span<const char> bytes) {
  Reader r(bytes);
  ImportOutcome out;
  bool hasPlan = false;
  if (!r.Get(out.lines) || !r.Get(out.failure) || !r.Get(out.failureText) || !r.Get(hasPlan)) return std::nullopt;
  if (out.failure > ImportOutcome::Failure::OutOfMemory) return std::nullopt;
  if (hasPlan) {
    out.plan.emplace();
    if (!GetPlan(r, *out.plan)) return std::nullopt;
  }
  if (!r.AtEnd()) return std::nullopt;
  return out;
}

}  // namespace vorn
