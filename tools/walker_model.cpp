#include "walker_model.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>

#include "glb_writer.h"
#include "resource/image.h"
#include "resource/png_codec.h"

namespace vorn::tools {
namespace {

using Vec3 = std::array<float, 3>;
using Json = GlbWriter::Json;

// Bones: name, parent node (-1 for the root), rest translation from the parent. No rest
// rotations, so each inverse bind matrix is a plain translation.
struct Bone {
  int parent;
  Vec3 local;
};
constexpr std::array<Bone, 9> kBones = {{
    {-1, {0.0f, 1.0f, 0.0f}},     // 1 Hips
    {1, {0.0f, 0.05f, 0.0f}},     // 2 Spine
    {2, {0.0f, 0.6f, 0.0f}},      // 3 Head
    {2, {0.3f, 0.55f, 0.0f}},     // 4 LeftArm (the figure faces +z, its left is +x)
    {2, {-0.3f, 0.55f, 0.0f}},    // 5 RightArm
    {1, {0.13f, 0.0f, 0.0f}},     // 6 LeftLeg
    {6, {0.0f, -0.5f, 0.0f}},     // 7 LeftShin
    {1, {-0.13f, 0.0f, 0.0f}},    // 8 RightLeg
    {8, {0.0f, -0.5f, 0.0f}},     // 9 RightShin
}};
constexpr int kFirstBoneNode = 1;

Vec3 RestWorld(int node) {
  Vec3 p{0, 0, 0};
  for (int n = node; n >= kFirstBoneNode; n = kBones[n - kFirstBoneNode].parent) {
    for (int i = 0; i < 3; ++i) p[i] += kBones[n - kFirstBoneNode].local[i];
  }
  return p;
}

// The texture atlas: 4 by 4 cells of 16 pixels.
enum Cell { kShirt, kTrousers, kSkin, kFace, kShoe, kHair };
constexpr int kAtlas = 64, kCellPixels = 16;

std::vector<std::uint8_t> AtlasPNG() {
  Image image(Image::Mode::RGB, kAtlas, kAtlas);
  const auto fill = [&](int cell, const std::function<std::array<int, 3>(int, int)>& colour) {
    const int x0 = cell % 4 * kCellPixels, y0 = cell / 4 * kCellPixels;
    for (int y = 0; y < kCellPixels; ++y) {
      for (int x = 0; x < kCellPixels; ++x) {
        const auto c = colour(x, y);
        std::uint8_t* px = &image.data()[image.offset(x0 + x, y0 + y)];
        for (int i = 0; i < 3; ++i) px[i] = static_cast<std::uint8_t>(c[i]);
      }
    }
  };
  fill(kShirt, [](int, int y) { return y % 4 == 0 ? std::array{40, 80, 170} : std::array{55, 115, 205}; });
  fill(kTrousers, [](int, int) { return std::array{60, 60, 75}; });
  fill(kSkin, [](int, int) { return std::array{240, 190, 150}; });
  fill(kFace, [](int x, int y) {
    // Hair along the top, two eyes and a mouth; rows run from the top of the face.
    if (y < 3) return std::array{80, 50, 25};
    if (y >= 6 && y <= 7 && ((x >= 3 && x <= 5) || (x >= 10 && x <= 12))) return std::array{30, 30, 40};
    if (y == 11 && x >= 5 && x <= 10) return std::array{170, 60, 60};
    return std::array{240, 190, 150};
  });
  fill(kShoe, [](int, int) { return std::array{90, 50, 25}; });
  fill(kHair, [](int, int) { return std::array{80, 50, 25}; });
  return EncodePNG(image);
}

struct Mesh {
  std::vector<float> positions, normals, uvs, weights;
  std::vector<std::uint8_t> joints;
  std::vector<std::uint16_t> indices;
};

// A box between `lo` and `hi` (rest pose, world units) moved rigidly by joint `joint`
// (an index into the skin's joint list). Faces default to `cell`; the +z face and the
// top may take their own.
void AddBox(Mesh& mesh, Vec3 lo, Vec3 hi, int joint, Cell cell, Cell front, Cell top) {
  for (int axis = 0; axis < 3; ++axis) {
    for (const int sign : {1, -1}) {
      const int u = (axis + 1) % 3, v = (axis + 2) % 3;
      const Cell faceCell = axis == 2 && sign > 0 ? front : axis == 1 && sign > 0 ? top : cell;
      // Texture coordinates: u along the face's first axis, v from the top of the cell,
      // so the +z face shows its picture upright (x to the right, y up).
      const float cu = static_cast<float>(faceCell % 4 * kCellPixels + 1) / kAtlas;
      const float cv = static_cast<float>(faceCell / 4 * kCellPixels + 1) / kAtlas;
      const float span = static_cast<float>(kCellPixels - 2) / kAtlas;
      const auto first = static_cast<std::uint16_t>(mesh.positions.size() / 3);
      const std::array<std::array<int, 2>, 4> corners = {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
      for (const auto& [a, b] : corners) {
        Vec3 p{};
        p[axis] = sign > 0 ? hi[axis] : lo[axis];
        p[u] = a ? hi[u] : lo[u];
        p[v] = b ? hi[v] : lo[v];
        mesh.positions.insert(mesh.positions.end(), p.begin(), p.end());
        Vec3 n{0, 0, 0};
        n[axis] = static_cast<float>(sign);
        mesh.normals.insert(mesh.normals.end(), n.begin(), n.end());
        // On the +z face u runs along x and v along y, so higher points take rows nearer
        // the top of the cell; elsewhere any mapping of the cell does.
        const float tv = axis == 2 ? 1.0f - static_cast<float>(b) : static_cast<float>(b);
        mesh.uvs.insert(mesh.uvs.end(), {cu + span * static_cast<float>(a), cv + span * tv});
        mesh.joints.insert(mesh.joints.end(), {static_cast<std::uint8_t>(joint), 0, 0, 0});
        mesh.weights.insert(mesh.weights.end(), {1.0f, 0.0f, 0.0f, 0.0f});
      }
      // (u, v) corners in this order run counter-clockwise seen from +axis.
      const std::array<std::uint16_t, 6> ccw = {0, 1, 2, 0, 2, 3}, cw = {0, 2, 1, 0, 3, 2};
      for (const auto i : sign > 0 ? ccw : cw) mesh.indices.push_back(static_cast<std::uint16_t>(first + i));
    }
  }
}

Mesh BuildMesh() {
  Mesh m;
  // Joint numbers: node - 1.
  constexpr int hips = 0, spine = 1, head = 2, leftArm = 3, rightArm = 4, leftLeg = 5, leftShin = 6,
                rightLeg = 7, rightShin = 8;
  AddBox(m, {-0.22f, 0.88f, -0.12f}, {0.22f, 1.08f, 0.12f}, hips, kTrousers, kTrousers, kTrousers);
  AddBox(m, {-0.24f, 1.05f, -0.13f}, {0.24f, 1.6f, 0.13f}, spine, kShirt, kShirt, kShirt);
  AddBox(m, {-0.14f, 1.62f, -0.14f}, {0.14f, 1.95f, 0.14f}, head, kHair, kFace, kHair);
  for (const float side : {1.0f, -1.0f}) {
    const int arm = side > 0 ? leftArm : rightArm;
    const int leg = side > 0 ? leftLeg : rightLeg;
    const int shin = side > 0 ? leftShin : rightShin;
    const auto box = [&](float x0, float x1, float y0, float y1, float z0, float z1, int joint, Cell cell) {
      AddBox(m, {std::min(side * x0, side * x1), y0, z0}, {std::max(side * x0, side * x1), y1, z1}, joint, cell, cell,
             cell);
    };
    box(0.25f, 0.37f, 1.05f, 1.6f, -0.06f, 0.06f, arm, kShirt);
    box(0.26f, 0.36f, 0.93f, 1.05f, -0.05f, 0.05f, arm, kSkin);
    box(0.03f, 0.22f, 0.52f, 0.98f, -0.08f, 0.08f, leg, kTrousers);
    box(0.04f, 0.21f, 0.07f, 0.52f, -0.07f, 0.07f, shin, kTrousers);
    box(0.03f, 0.22f, 0.0f, 0.07f, -0.08f, 0.17f, shin, kShoe);
  }
  return m;
}

// A pose: each bone's translation, rotation quaternion (x, y, z, w) and scale.
struct Pose {
  std::array<Vec3, 9> t;
  std::array<std::array<float, 4>, 9> r;
  std::array<Vec3, 9> s;
};

std::array<float, 4> AxisAngle(int axis, double degrees) {
  const double half = degrees * std::numbers::pi / 360.0;
  std::array<float, 4> q{0, 0, 0, static_cast<float>(std::cos(half))};
  q[axis] = static_cast<float>(std::sin(half));
  return q;
}

Pose RestPose() {
  Pose p;
  for (std::size_t b = 0; b < kBones.size(); ++b) {
    p.t[b] = kBones[b].local;
    p.r[b] = {0, 0, 0, 1};
    p.s[b] = {1, 1, 1};
  }
  return p;
}

// One stride of each leg a second: legs and arms swing opposite, the knee bends on
// the back swing, the hips bob twice a stride.
Pose WalkPose(double t) {
  Pose p = RestPose();
  const double phase = 2.0 * std::numbers::pi * t;
  const double swing = std::sin(phase);
  p.t[0][1] += static_cast<float>(0.03 * std::cos(2.0 * phase));
  p.r[1] = AxisAngle(1, 6.0 * swing);
  p.r[3] = AxisAngle(0, -25.0 * swing);
  p.r[4] = AxisAngle(0, 25.0 * swing);
  p.r[5] = AxisAngle(0, 28.0 * swing);  // positive: the foot goes back (-z)
  p.r[6] = AxisAngle(0, 40.0 * std::max(0.0, swing));
  p.r[7] = AxisAngle(0, -28.0 * swing);
  p.r[8] = AxisAngle(0, 40.0 * std::max(0.0, -swing));
  return p;
}

// Standing: breathing (the chest rises), arms a little out, the head looking around, over
// two seconds. No scale keys: the FBX the model is converted to could not keep them.
Pose IdlePose(double t) {
  Pose p = RestPose();
  const double phase = std::numbers::pi * t;
  p.t[1][1] += static_cast<float>(0.01 * std::sin(phase));
  p.r[2] = AxisAngle(1, 12.0 * std::sin(phase));
  p.r[3] = AxisAngle(2, 4.0 + 2.0 * std::sin(phase));
  p.r[4] = AxisAngle(2, -4.0 - 2.0 * std::sin(phase));
  return p;
}

// The engine shows the last key reached, so keys come often; the last equals the first.
void AddAction(GlbWriter& w, const char* name, double duration, int keys, Pose (*pose)(double)) {
  std::vector<float> times;
  std::vector<Pose> poses;
  for (int k = 0; k <= keys; ++k) {
    const double t = duration * k / keys;
    times.push_back(static_cast<float>(t));
    poses.push_back(pose(k == keys ? 0.0 : t));
  }
  const int input = w.AddFloats(times, "SCALAR");
  Json channels = Json::array(), samplers = Json::array();
  // Channels in joint order, translation, rotation and scale for every bone: the
  // engine's bone table follows the order the channels name the nodes.
  for (std::size_t b = 0; b < kBones.size(); ++b) {
    std::vector<float> t, r, s;
    for (const Pose& p : poses) {
      t.insert(t.end(), p.t[b].begin(), p.t[b].end());
      r.insert(r.end(), p.r[b].begin(), p.r[b].end());
      s.insert(s.end(), p.s[b].begin(), p.s[b].end());
    }
    const int node = static_cast<int>(b) + kFirstBoneNode;
    for (const auto& [path, output] : {std::pair{"translation", w.AddFloats(t, "VEC3")},
                                       std::pair{"rotation", w.AddFloats(r, "VEC4")},
                                       std::pair{"scale", w.AddFloats(s, "VEC3")}}) {
      channels.push_back({{"sampler", samplers.size()}, {"target", {{"node", node}, {"path", path}}}});
      samplers.push_back({{"input", input}, {"output", output}, {"interpolation", "STEP"}});
    }
  }
  w.doc()["animations"].push_back({{"name", name}, {"channels", channels}, {"samplers", samplers}});
}

}  // namespace

bool WriteWalkerGLB(const std::string& path) {
  GlbWriter w;
  Json& doc = w.doc();
  const Mesh mesh = BuildMesh();
  const int position = w.AddFloats(mesh.positions, "VEC3", true);
  const int normal = w.AddFloats(mesh.normals, "VEC3");
  const int uv = w.AddFloats(mesh.uvs, "VEC2");
  const int joints = w.AddU8(mesh.joints, "VEC4");
  const int weights = w.AddFloats(mesh.weights, "VEC4");
  const int indices = w.AddU16(mesh.indices, "SCALAR");

  // Inverse bind matrices, column-major: a translation by minus the joint's rest position.
  std::vector<float> inverseBind;
  for (std::size_t b = 0; b < kBones.size(); ++b) {
    const Vec3 p = RestWorld(static_cast<int>(b) + kFirstBoneNode);
    inverseBind.insert(inverseBind.end(), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -p[0], -p[1], -p[2], 1});
  }
  const int ibm = w.AddFloats(inverseBind, "MAT4");
  const int imageView = w.AddImageBytes(AtlasPNG());

  doc["scene"] = 0;
  doc["scenes"] = Json::array({{{"nodes", {0, kFirstBoneNode}}}});
  Json nodes = Json::array({{{"name", "Walker"}, {"mesh", 0}, {"skin", 0}}});
  Json jointList = Json::array();
  for (std::size_t b = 0; b < kBones.size(); ++b) {
    const int node = static_cast<int>(b) + kFirstBoneNode;
    Json bone = {{"name", WalkerBoneNames()[b]}, {"translation", kBones[b].local}};
    Json children = Json::array();
    for (std::size_t c = 0; c < kBones.size(); ++c) {
      if (kBones[c].parent == node) children.push_back(static_cast<int>(c) + kFirstBoneNode);
    }
    if (!children.empty()) bone["children"] = children;
    nodes.push_back(bone);
    jointList.push_back(node);
  }
  doc["nodes"] = nodes;
  doc["skins"] = Json::array({{{"joints", jointList}, {"inverseBindMatrices", ibm}, {"skeleton", kFirstBoneNode}}});
  doc["meshes"] = Json::array({{{"name", "Walker"},
                                {"primitives", Json::array({{{"attributes",
                                                              {{"POSITION", position},
                                                               {"NORMAL", normal},
                                                               {"TEXCOORD_0", uv},
                                                               {"JOINTS_0", joints},
                                                               {"WEIGHTS_0", weights}}},
                                                             {"indices", indices},
                                                             {"material", 0}}})}}});
  // The diffuse texture through the specular-glossiness material, which the engine's
  // reader takes its image from.
  doc["extensionsUsed"] = Json::array({"KHR_materials_pbrSpecularGlossiness"});
  doc["materials"] = Json::array(
      {{{"name", "Atlas"},
        {"extensions", {{"KHR_materials_pbrSpecularGlossiness", {{"diffuseTexture", {{"index", 0}}}}}}}}});
  doc["textures"] = Json::array({{{"source", 0}, {"sampler", 0}}});
  doc["samplers"] = Json::array({{{"magFilter", 9728}, {"minFilter", 9728}}});
  doc["images"] = Json::array({{{"bufferView", imageView}, {"mimeType", "image/png"}}});
  doc["animations"] = Json::array();
  AddAction(w, "Walk", 1.0, 24, &WalkPose);
  AddAction(w, "Idle", 2.0, 24, &IdlePose);
  return w.WriteFile(path);
}

}  // namespace vorn::tools
