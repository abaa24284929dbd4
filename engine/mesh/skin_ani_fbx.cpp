#include "mesh/skin_ani_fbx.h"

#include <algorithm>
#include <cmath>

#include "core/console.h"

namespace vorn {
namespace {

// The value of a channel at `seconds`: clamped to the first and last key, interpolated
// between keys (rotation by slerp on the shorter arc).
FbxVector4 Sample(const ActionChannel& channel, double seconds, bool rotation, const FbxVector4& rest) {
  const auto& keys = channel.samples;
  if (keys.empty()) return rest;
  const std::size_t n = rotation ? 4 : 3;
  const auto value = [&](const ActionSample& s) {
    FbxVector4 v = rest;
    for (std::size_t i = 0; i < n && i < s.value.size(); ++i) v[i] = s.value[i];
    return v;
  };
  if (seconds <= keys.front().time) return value(keys.front());
  if (seconds >= keys.back().time) return value(keys.back());
  const auto after = std::upper_bound(keys.begin(), keys.end(), seconds,
                                      [](double t, const ActionSample& s) { return t < s.time; });
  const ActionSample& b = *after;
  const ActionSample& a = *(after - 1);
  const double span = b.time - a.time;
  const double f = span > 0 ? (seconds - a.time) / span : 0.0;
  FbxVector4 va = value(a), vb = value(b);
  if (!rotation) {
    for (std::size_t i = 0; i < 3; ++i) va[i] += (vb[i] - va[i]) * f;
    return va;
  }
  double dot = 0;
  for (std::size_t i = 0; i < 4; ++i) dot += va[i] * vb[i];
  if (dot < 0) {
    dot = -dot;
    for (std::size_t i = 0; i < 4; ++i) vb[i] = -vb[i];
  }
  double wa = 1 - f, wb = f;
  if (dot < 0.9995) {
    const double theta = std::acos(std::min(dot, 1.0));
    const double s = std::sin(theta);
    wa = std::sin((1 - f) * theta) / s;
    wb = std::sin(f * theta) / s;
  }
  FbxVector4 q;
  double len = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    q[i] = wa * va[i] + wb * vb[i];
    len += q[i] * q[i];
  }
  len = std::sqrt(len);
  if (len > 0)
    for (std::size_t i = 0; i < 4; ++i) q[i] /= len;
  return q;
}

}  // namespace

FbxMatrix EvaluateLocalTransform(const FbxSceneNode& node, const std::vector<ActionChannel>* channels, double seconds) {
  if (!channels || channels->empty()) return node.local;
  FbxVector4 T = node.T, Q = node.Q, S = node.S;
  for (const ActionChannel& c : *channels) {
    if (c.path == "translation") T = Sample(c, seconds, false, node.T);
    else if (c.path == "rotation") Q = Sample(c, seconds, true, node.Q);
    else if (c.path == "scale") S = Sample(c, seconds, false, node.S);
  }
  T[3] = 0.0;
  S[3] = 1.0;
  return FbxMatrix::FromTQS(T, Q, S);
}

void Vorn_SkinSubMeshAni_FBX::LoadSkinMeshData(std::shared_ptr<const FbxSceneTree> tree,
                                               std::vector<FbxCluster> clusters) {
  tree_ = std::move(tree);
  clusters_ = std::move(clusters);
  BoneVertexMatrixArray.clear();
  BoneAnimationMatrixArray.clear();
  FinalShaderMatrixArray.clear();
  FinalBoneXYZArray.clear();
  for (std::size_t b = 0; b < clusters_.size(); ++b) {
    // BoneArray holds the clusters themselves, shared with clusters_.
    BoneArray.push_back(std::make_shared<FbxCluster>(clusters_[b]));
    BoneVertexMatrixArray.set(static_cast<std::int64_t>(b), FbxAMatrix(clusters_[b].meshToBone));
  }
}

const std::vector<double>& Vorn_SkinSubMeshAni_FBX::GetFinalBoneMatrixByTime(SkinTime currTime) {
  if (currTime.seconds == 0.0 || !tree_) return FinalShaderMatrixArray;
  FinalShaderMatrixArray.clear();
  FinalBoneXYZArray.clear();
  const double t = currTime.seconds;
  // The frame number, clamped so that any time a script sets converts safely.
  const double frame = std::floor(t * tree_->frameRate + 1e-9);
  console::print("CurrFrame:", std::isfinite(frame) ? static_cast<std::int64_t>(std::clamp(frame, -9.0e18, 9.0e18)) : 0);
  // Parents precede children, so one pass gives every global transform.
  const auto& nodes = tree_->nodes;
  global_.resize(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const std::vector<ActionChannel>* channels = action_ ? action_->find(static_cast<int>(i)) : nullptr;
    const FbxMatrix local = EvaluateLocalTransform(nodes[i], channels, t);
    const std::int64_t p = nodes[i].parent;
    global_[i] = p >= 0 ? global_[static_cast<std::size_t>(p)] * local : local;
  }
  for (std::size_t b = 0; b < clusters_.size(); ++b) {
    const FbxCluster& c = clusters_[b];
    const auto node = static_cast<std::size_t>(c.node);
    const FbxMatrix& global = global_.at(node);
    BoneAnimationMatrixArray.set(static_cast<std::int64_t>(b), FbxAMatrix(global));
    AppendShaderMatrix(global * c.meshToBone);
    const std::int64_t parent = nodes[node].parent;
    const FbxMatrix& pg = parent >= 0 ? global_[static_cast<std::size_t>(parent)] : global;
    FinalBoneXYZArray.push_back({global.Get(3, 0), global.Get(3, 1), global.Get(3, 2), pg.Get(3, 0), pg.Get(3, 1),
                                 pg.Get(3, 2)});
  }
  return FinalShaderMatrixArray;
}

}  // namespace vorn
