#include "mesh/model_import.h"

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <unordered_map>

#include "core/console.h"
#include "core/errors.h"
#include "mesh/import_helper.h"
#include "mesh/model_plan_wire.h"
#include "node/vertex_bone_sort.h"
#include "resource/image.h"
#include "resource/png_codec.h"

namespace vorn {
namespace {

// The material properties whose textures are taken, in the order the walk visits them
// (diffuse, emissive, ambient, specular, shininess, bump, normal map, transparency,
// reflection). glTF's base colour comes after diffuse; duplicates are skipped.
constexpr aiTextureType kTextureWalk[] = {
    aiTextureType_DIFFUSE,  aiTextureType_BASE_COLOR, aiTextureType_EMISSIVE, aiTextureType_AMBIENT,
    aiTextureType_SPECULAR, aiTextureType_SHININESS,  aiTextureType_HEIGHT,   aiTextureType_NORMALS,
    aiTextureType_OPACITY,  aiTextureType_REFLECTION,
};

// A count from a non-negative double, safe for any value a file may give.
std::int64_t WholeCount(double value) {
  if (!(value > 0)) return 0;
  return value >= 9.0e18 ? INT64_MAX : static_cast<std::int64_t>(value);
}

FbxMatrix ToFbxMatrix(const aiMatrix4x4& m) {
  // The library's matrices act on column vectors; ours keep the translation in row 3.
  FbxMatrix out;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) out.Set(r, c, m[c][r]);
  return out;
}

std::optional<GlbImage> DecodeEmbedded(const aiTexture& tex) {
  std::shared_ptr<Image> image;
  if (tex.mHeight == 0) {
    // Compressed bytes (PNG is the one format we decode here).
    image = DecodePNG(std::span(reinterpret_cast<const std::uint8_t*>(tex.pcData), tex.mWidth));
  } else {
    std::vector<std::uint8_t> rgba;
    const std::size_t n = static_cast<std::size_t>(tex.mWidth) * tex.mHeight;
    rgba.reserve(n * 4);
    for (std::size_t i = 0; i < n; ++i) {
      const aiTexel& t = tex.pcData[i];
      rgba.insert(rgba.end(), {t.r, t.g, t.b, t.a});
    }
    image = Image::FromBytes(Image::Mode::RGBA, static_cast<int>(tex.mWidth), static_cast<int>(tex.mHeight),
                             std::move(rgba));
  }
  if (!image) return std::nullopt;
  if (image->mode() != Image::Mode::RGBA && image->mode() != Image::Mode::RGB) image = image->convert(Image::Mode::RGB);
  GlbImage out;
  out.format = image->mode() == Image::Mode::RGBA ? "RGBA" : "RGB";
  out.width = image->width();
  out.height = image->height();
  out.pixels = std::make_shared<const std::vector<std::uint8_t>>(std::move(image->data()));
  return out;
}

class Mapper {
 public:
  Mapper(const aiScene& scene, const std::string& path, ModelSplit split, bool swapyz)
      : s_(scene), path_(path), split_(split), swapyz_(swapyz) {}

  std::optional<ModelPlan> Map() {
    ReadActions();
    if (!s_.mRootNode) {
      console::print("No find Root");
      return std::nullopt;
    }
    auto tree = std::make_shared<FbxSceneTree>();
    tree->frameRate = frameRate_;
    Walk(*s_.mRootNode, *tree);
    tree_ = tree;
    plan_.tree = tree;
    // Node flags first: the vertex layout must be the same on every submesh.
    bool anySkin = false, allNormals = true, anyMesh = false;
    for (std::size_t n = 0; n < aiNodes_.size(); ++n) {
      for (unsigned k = 0; k < aiNodes_[n]->mNumMeshes; ++k) {
        const aiMesh* m = MeshAt(aiNodes_[n]->mMeshes[k]);
        if (!m) continue;
        anyMesh = true;
        anySkin = anySkin || m->mNumBones > 0;
        allNormals = allNormals && m->HasNormals();
      }
    }
    plan_.withSkin = anySkin;
    plan_.withNormal = anyMesh && allNormals;
    plan_.withTexUV = true;  // every record carries a UV pair (zero when the file has none)
    // Node 0 is the root; the FBX walk numbers the nodes below it from 0. The general
    // loader takes the root's meshes too (a glTF scene's only node is the root).
    int running = 0;
    for (std::size_t n = split_ == ModelSplit::PerMesh ? 0 : 1; n < aiNodes_.size(); ++n) {
      const aiNode& node = *aiNodes_[n];
      if (node.mNumMeshes == 0) continue;
      if (split_ == ModelSplit::PerMeshNode) {
        std::vector<unsigned> all(node.mMeshes, node.mMeshes + node.mNumMeshes);
        BuildSubmesh("submesh_" + std::to_string(n - 1), n, all);
      } else {
        for (unsigned k = 0; k < node.mNumMeshes; ++k) {
          BuildSubmesh("submesh_" + std::to_string(running++), n, {node.mMeshes[k]});
        }
      }
    }
    FinishActions();
    return std::move(plan_);
  }

 private:
  const aiMesh* MeshAt(unsigned index) const { return index < s_.mNumMeshes ? s_.mMeshes[index] : nullptr; }

  // Depth first, each node before its children; iterative, since a file may nest
  // nodes deeper than the stack would take.
  void Walk(const aiNode& root, FbxSceneTree& tree) {
    std::vector<std::pair<const aiNode*, std::int64_t>> pending{{&root, -1}};
    while (!pending.empty()) {
      const auto [node, parent] = pending.back();
      pending.pop_back();
      const auto index = static_cast<std::int64_t>(tree.nodes.size());
      FbxSceneNode out;
      out.name = node->mName.C_Str();
      out.parent = parent;
      aiVector3D scale, pos;
      aiQuaternion rot;
      node->mTransformation.Decompose(scale, rot, pos);
      out.T = FbxVector4(pos.x, pos.y, pos.z, 0.0);
      out.Q = FbxVector4(rot.x, rot.y, rot.z, rot.w);
      out.S = FbxVector4(scale.x, scale.y, scale.z, 1.0);
      out.local = FbxMatrix::FromTQS(out.T, out.Q, out.S);
      nameToNode_.try_emplace(out.name, index);
      tree.nodes.push_back(std::move(out));
      aiNodes_.push_back(node);
      for (unsigned i = node->mNumChildren; i-- > 0;)
        if (node->mChildren[i]) pending.emplace_back(node->mChildren[i], index);
    }
  }

  FbxMatrix BindGlobal(std::size_t node) const {
    FbxMatrix g = tree_->nodes[node].local;
    for (std::int64_t p = tree_->nodes[node].parent; p >= 0; p = tree_->nodes[static_cast<std::size_t>(p)].parent)
      g = tree_->nodes[static_cast<std::size_t>(p)].local * g;
    return g;
  }

  void ReadActions() {
    for (unsigned a = 0; a < s_.mNumAnimations; ++a) {
      const aiAnimation* anim = s_.mAnimations[a];
      if (!anim) continue;
      const double tps = anim->mTicksPerSecond > 0 ? anim->mTicksPerSecond : 25.0;
      if (a == 0) frameRate_ = FileFrameRate(tps);
      std::string name = anim->mName.C_Str();
      if (name.empty()) name = "Take " + std::to_string(a);
      pendingActions_.push_back({name, anim, tps});
    }
  }

  double FileFrameRate(double tps) const {
    float custom = 0;  // the FBX global settings' rate, stored as a float
    if (s_.mMetaData && s_.mMetaData->Get("CustomFrameRate", custom) && custom > 0 && custom <= 1000) return custom;
    return tps <= 240 ? tps : 30.0;  // ticks of a millisecond clock are no frames
  }

  void FinishActions() {
    for (const auto& [name, anim, tps] : pendingActions_) {
      MeshAction action;
      double begin = INFINITY, end = -INFINITY;
      for (unsigned c = 0; c < anim->mNumChannels; ++c) {
        const aiNodeAnim* ch = anim->mChannels[c];
        if (!ch) continue;
        const auto node = nameToNode_.find(ch->mNodeName.C_Str());
        if (node == nameToNode_.end()) continue;
        auto& channels = action[static_cast<int>(node->second)];
        ActionChannel t{"translation", {}}, r{"rotation", {}}, s{"scale", {}};
        for (unsigned k = 0; k < ch->mNumPositionKeys; ++k) {
          const auto& key = ch->mPositionKeys[k];
          t.samples.push_back({key.mTime / tps, {key.mValue.x, key.mValue.y, key.mValue.z}});
        }
        for (unsigned k = 0; k < ch->mNumRotationKeys; ++k) {
          const auto& key = ch->mRotationKeys[k];
          r.samples.push_back({key.mTime / tps, {key.mValue.x, key.mValue.y, key.mValue.z, key.mValue.w}});
        }
        for (unsigned k = 0; k < ch->mNumScalingKeys; ++k) {
          const auto& key = ch->mScalingKeys[k];
          s.samples.push_back({key.mTime / tps, {key.mValue.x, key.mValue.y, key.mValue.z}});
        }
        for (ActionChannel* one : {&t, &r, &s}) {
          if (one->samples.empty()) continue;
          begin = std::min(begin, one->samples.front().time);
          end = std::max(end, one->samples.back().time);
          channels.push_back(std::move(*one));
        }
      }
      if (!plan_.first) {
        ModelFirstAnimation f;
        f.beginTime = std::isfinite(begin) ? begin : 0.0;
        f.endTime = std::isfinite(end) ? end : f.beginTime;
        f.duration = std::max(anim->mDuration / tps, f.endTime - f.beginTime);
        if (!std::isfinite(f.duration) || f.duration < 0) f.duration = 0.0;
        f.frameDelay = 1.0 / frameRate_;
        f.frameCount = WholeCount(f.duration * frameRate_ + 0.5);
        f.secondCount = WholeCount(f.duration);
        plan_.first = f;
      }
      plan_.actions.set(name, std::move(action));
    }
  }

  void MaterialWalk(int layer, const aiMesh& mesh, ModelSubmeshPlan& out) {
    const aiMaterial* mat = mesh.mMaterialIndex < s_.mNumMaterials ? s_.mMaterials[mesh.mMaterialIndex] : nullptr;
    if (!mat || mat->GetName() == aiString(AI_DEFAULT_MATERIAL_NAME)) {
      console::print("no material applied");
      return;
    }
    char line[80];
    std::snprintf(line, sizeof line, "All polygons share the same material on layer %d", layer);
    console::print(line);
    std::vector<std::string> seen;
    for (aiTextureType type : kTextureWalk) {
      for (unsigned i = 0; i < mat->GetTextureCount(type); ++i) {
        aiString file;
        if (mat->GetTexture(type, i, &file) != AI_SUCCESS) continue;
        const std::string name = file.C_Str();
        if (name.empty() || std::find(seen.begin(), seen.end(), name) != seen.end()) continue;
        seen.push_back(name);
        if (const aiTexture* tex = s_.GetEmbeddedTexture(name.c_str())) {
          if (auto image = DecodeEmbedded(*tex)) out.images.push_back(std::move(*image));
        } else {
          out.textureFiles.push_back(name);
        }
      }
    }
  }

  void BuildSubmesh(const std::string& name, std::size_t node, const std::vector<unsigned>& meshes) {
    ModelSubmeshPlan out;
    out.submeshName = name;
    out.withTexUV = true;
    out.withNormal = plan_.withNormal;
    bool skinned = false;
    for (unsigned m : meshes)
      if (const aiMesh* mesh = MeshAt(m)) skinned = skinned || mesh->mNumBones > 0;
    out.withSkin = plan_.withSkin;
    // A mesh without bones on a skinned node follows its own node like a one-bone skin;
    // one without any skin on the node is placed by its node's bind transform.
    const FbxMatrix place = BindGlobal(node);
    std::unordered_map<std::string, std::int64_t> clusterOf;
    if (out.withSkin && !skinned) out.clusters.push_back({tree_->nodes[node].name, static_cast<std::int64_t>(node), FbxMatrix()});
    std::size_t base = 0;
    for (std::size_t layer = 0; layer < meshes.size(); ++layer) {
      const aiMesh* mesh = MeshAt(meshes[layer]);
      if (!mesh) continue;
      MaterialWalk(static_cast<int>(layer), *mesh, out);
      // Bones and weights per vertex (a "control point").
      std::vector<std::vector<BoneInfo>> bones(mesh->mNumVertices);
      for (unsigned b = 0; b < mesh->mNumBones; ++b) {
        const aiBone* bone = mesh->mBones[b];
        if (!bone) continue;
        const std::string boneName = bone->mName.C_Str();
        auto found = clusterOf.find(boneName);
        if (found == clusterOf.end()) {
          const auto at = nameToNode_.find(boneName);
          if (at == nameToNode_.end()) continue;  // a bone without a node moves nothing
          found = clusterOf.emplace(boneName, static_cast<std::int64_t>(out.clusters.size())).first;
          out.clusters.push_back({boneName, at->second, ToFbxMatrix(bone->mOffsetMatrix)});
        }
        for (unsigned w = 0; w < bone->mNumWeights; ++w) {
          const aiVertexWeight& vw = bone->mWeights[w];
          if (vw.mVertexId < bones.size()) bones[vw.mVertexId].emplace_back(found->second, vw.mWeight);
        }
      }
      if (out.clusters.size() > 64) throw RuntimeError("The number of bones cannot exceed 64!");
      for (unsigned v = 0; v < mesh->mNumVertices; ++v) AppendVertex(*mesh, v, base + v, skinned, place, bones[v], out);
      for (unsigned f = 0; f < mesh->mNumFaces; ++f) {
        const aiFace& face = mesh->mFaces[f];
        if (face.mNumIndices != 3) continue;  // triangles only
        for (unsigned i = 0; i < 3; ++i) {
          if (face.mIndices[i] >= mesh->mNumVertices) throw ValueError(path_ + ": a face names a vertex that is missing");
          out.indices.push_back(static_cast<std::int64_t>(base + face.mIndices[i]));
        }
      }
      base += mesh->mNumVertices;
    }
    plan_.submeshes.push_back(std::move(out));
  }

  void AppendVertex(const aiMesh& mesh, unsigned v, std::size_t number, bool skinned, const FbxMatrix& place,
                    std::vector<BoneInfo>& bones, ModelSubmeshPlan& out) {
    auto& o = out.vertices;
    const bool uv = mesh.HasTextureCoords(0);
    o.push_back(uv ? mesh.mTextureCoords[0][v].x : 0.0);
    o.push_back(uv ? mesh.mTextureCoords[0][v].y : 0.0);
    const bool bake = !out.withSkin;
    FbxVector4 p(mesh.mVertices[v].x, mesh.mVertices[v].y, mesh.mVertices[v].z, 1.0);
    FbxVector4 n(0, 0, 0, 0);
    if (mesh.HasNormals()) n = FbxVector4(mesh.mNormals[v].x, mesh.mNormals[v].y, mesh.mNormals[v].z, 0.0);
    if (bake) {
      p = Transform(place, p);
      n = Transform(place, n);
    }
    if (swapyz_) {
      std::swap(p[1], p[2]);
      std::swap(n[1], n[2]);
    }
    if (out.withSkin) {
      if (bones.size() > 4) {
        char line[64];
        std::snprintf(line, sizeof line, "顶点%zu的绑定骨骼数量大于4", number);
        console::print(line);
      }
      if (!skinned) bones.assign(1, BoneInfo(0, 1.0));
      const auto [index, weight] = SortVertex4BoneInfo(bones);
      o.push_back(static_cast<double>(index[0]) + static_cast<double>(index[1]) * 0.01);
      o.push_back(static_cast<double>(index[2]) + static_cast<double>(index[3]) * 0.01);
      o.insert(o.end(), weight.begin(), weight.end());
    }
    // Every layout of a textured submesh has a normal: zero where the file gives none.
    o.insert(o.end(), {n[0], n[1], n[2]});
    o.insert(o.end(), {p[0], p[1], p[2]});
    if (out.withSkin) o.push_back(1.0);
  }

  // A point or direction (w = 0) through a transform that keeps translation in row 3.
  static FbxVector4 Transform(const FbxMatrix& m, const FbxVector4& v) {
    FbxVector4 out(0, 0, 0, 0);
    for (int c = 0; c < 3; ++c) {
      double sum = 0;
      for (int r = 0; r < 4; ++r) sum += v[static_cast<std::size_t>(r)] * m.Get(r, c);
      out[static_cast<std::size_t>(c)] = sum;
    }
    return out;
  }

  struct PendingAction {
    std::string name;
    const aiAnimation* anim;
    double tps;
  };

  const aiScene& s_;
  std::string path_;
  ModelSplit split_;
  bool swapyz_;
  double frameRate_ = 30.0;
  ModelPlan plan_;
  std::shared_ptr<const FbxSceneTree> tree_;
  std::vector<const aiNode*> aiNodes_;
  std::unordered_map<std::string, std::int64_t> nameToNode_;
  std::vector<PendingAction> pendingActions_;
};

unsigned Flags(ModelSplit split) {
  unsigned flags = aiProcess_JoinIdenticalVertices | aiProcess_FlipUVs | aiProcess_ValidateDataStructure;
  if (split == ModelSplit::PerMesh) flags |= aiProcess_Triangulate;
  return flags;
}

std::optional<ModelPlan> MapScene(const aiScene* scene, const std::string& path, ModelSplit split, bool swapyz) {
  if (!scene) {
    console::print(path, "Load Failed.");
    return std::nullopt;
  }
  return Mapper(*scene, path, split, swapyz).Map();
}

// Reads and maps here, printing and throwing as it goes.
std::optional<ModelPlan> ReadAndMap(const ImportRequest& r) {
  Assimp::Importer importer;
  const unsigned flags = Flags(r.split);
  const aiScene* scene = r.fromMemory ? importer.ReadFileFromMemory(r.bytes.data(), r.bytes.size(), flags, r.hint.c_str())
                                      : importer.ReadFile(r.path, flags);
  return MapScene(scene, r.path, r.split, r.swapyz);
}

// The helper's side: its console lines are collected for the answer instead of printed.
std::vector<std::string> helperLines;
void CollectLine(std::string_view line) { helperLines.emplace_back(line); }

}  // namespace

std::string ServeModelImport(std::string_view requestBytes) {
  console::set_sink(&CollectLine);
  helperLines.clear();
  ImportOutcome out;
  try {
    const auto request = DecodeImportRequest(requestBytes);
    if (!request) throw RuntimeError("the model import request arrived damaged");
    out.plan = ReadAndMap(*request);
  } catch (const RuntimeError& e) {
    out.failure = ImportOutcome::Failure::RuntimeError;
    out.failureText = e.what();
  } catch (const ValueError& e) {
    out.failure = ImportOutcome::Failure::ValueError;
    out.failureText = e.what();
  } catch (const std::bad_alloc&) {
    out.failure = ImportOutcome::Failure::OutOfMemory;
  } catch (const std::exception& e) {
    out.failure = ImportOutcome::Failure::RuntimeError;
    out.failureText = e.what();
  }
  if (out.failure != ImportOutcome::Failure::None) out.plan.reset();
  out.lines = std::move(helperLines);
  return EncodeImportOutcome(out);
}

namespace {

std::optional<ModelPlan> Import(const ImportRequest& request) {
  const HelperAnswer answer = RunInImportHelper(EncodeImportRequest(request), &ServeModelImport);
  // No helper to spare (no process can be made): read here, as a build without the
  // helper would.
  if (answer.status == HelperAnswer::Status::Unavailable) return ReadAndMap(request);
  std::optional<ImportOutcome> out;
  if (answer.status == HelperAnswer::Status::Answered) out = DecodeImportOutcome(answer.bytes);
  if (!out) return MapScene(nullptr, request.path, request.split, request.swapyz);  // it died on the file
  for (const std::string& line : out->lines) console::write_line(line);
  switch (out->failure) {
    case ImportOutcome::Failure::None: return std::move(out->plan);
    case ImportOutcome::Failure::RuntimeError: throw RuntimeError(out->failureText);
    case ImportOutcome::Failure::ValueError: throw ValueError(out->failureText);
    case ImportOutcome::Failure::OutOfMemory: throw std::bad_alloc();
  }
  return std::nullopt;
}

}  // namespace

std::optional<ModelPlan> ImportModelFile(const std::string& path, ModelSplit split, bool swapyz) {
  ImportRequest request;
  request.split = split;
  request.swapyz = swapyz;
  request.path = path;
  return Import(request);
}

std::optional<ModelPlan> ImportModelMemory(std::span<const std::uint8_t> bytes, const std::string& hint,
                                           const std::string& path, ModelSplit split, bool swapyz) {
  ImportRequest request;
  request.fromMemory = true;
  request.split = split;
  request.swapyz = swapyz;
  request.path = path;
  request.hint = hint;
  request.bytes.assign(bytes.begin(), bytes.end());
  return Import(request);
}

}  // namespace vorn
