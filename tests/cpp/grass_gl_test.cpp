// Grass: blades per submesh, the shape of a blade, seeded patches, refused arguments,
// dropping the blades onto the ground, and the swing on screen.
#include "landscape/grass.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "core/errors.h"
#include "core/math_util.h"
#include "gl_scene.h"
#include "node/program_uniforms.h"
#include "shader/fx_3d.h"

namespace vorn::test {
namespace {

using Grass = Vorn_3DGrass;

struct GrassArgs {
  double radius = 2.0, density = 50.0, minW = 0.4, maxW = 0.6, minH = 0.3, maxH = 0.6, subsectionH = 0.2;
};

class GrassGL : public NodeGLTest {
 protected:
  std::shared_ptr<Grass> MakeGrass(const GrassArgs& a, double x = 0, double y = 0, double z = 0) {
    auto grass = MakeNode<Grass>(x, y, z);
    grass->OnLoad(scene);
    ConsoleCapture quiet;  // ApplyFX prints the program's source
    grass->CreateGrass(a.radius, a.density, a.minW, a.maxW, a.minH, a.maxH, a.subsectionH);
    return grass;
  }
};

// Blades of a submesh: a blade's root is the vertex pair with v == 0.
std::size_t BladeCount(const Grass& g, int s) {
  std::size_t roots = 0;
  for (const auto& uv : g.VertexArray_UV.at(s))
    if (uv[1] == 0.0) ++roots;
  return roots / 2;
}

TEST_F(GrassGL, BladesAreSplitIntoSubmeshesOfAtMost3000) {
  if (!HasContext()) return;
  const struct {
    const char* name;
    double density;
    std::vector<std::size_t> blades;
  } cases[] = {
      {"the default patch", 50, {50}},
      {"a fraction is dropped", 50.9, {50}},
      {"an empty patch keeps one submesh", 0, {0}},
      {"exactly one full submesh", 3000, {3000}},
      {"one blade over", 3001, {3000, 1}},
      {"two full and a rest", 7000, {3000, 3000, 1000}},
  };
  for (const auto& c : cases) {
    GrassArgs args;
    args.density = c.density;
    auto grass = MakeGrass(args);
    ASSERT_EQ(grass->SubMeshList.size(), c.blades.size()) << c.name;
    for (std::size_t s = 0; s < c.blades.size(); ++s) {
      const int i = static_cast<int>(s);
      EXPECT_EQ(grass->SubMeshList[s], "submesh_" + std::to_string(s)) << c.name;
      EXPECT_EQ(BladeCount(*grass, i), c.blades[s]) << c.name << ", submesh " << s;
      EXPECT_EQ(grass->VertexDescArray.at(i), glc::T2F_N3F_V3F) << c.name;
      EXPECT_EQ(grass->SubMeshShapeType.at(i), glc::QUADS) << c.name;
      EXPECT_EQ(grass->SubMeshFX.at(i), Program(Vorn_3DFX::FX_GRASS)) << c.name;
    }
    EXPECT_EQ(grass->statckR, 2.0) << c.name;
  }
}

// Walks every blade of a patch and checks its shape against the arguments.
void ExpectBladeShapes(const Grass& g, const GrassArgs& a) {
  for (const auto& [s, positions] : g.VertexArray_Positon) {
    const auto& normals = g.VertexArray_Normal.at(s);
    const auto& uvs = g.VertexArray_UV.at(s);
    const auto& indices = g.VIndexArray.at(s);
    ASSERT_EQ(normals.size(), positions.size());
    ASSERT_EQ(uvs.size(), positions.size());
    std::size_t v = 0, q = 0;
    while (v < positions.size()) {
      // A blade: pairs from v == 0 up to v == 1, all above the same two ground points.
      std::size_t pairs = 0;
      while (v + 2 * pairs < positions.size() && (pairs == 0 || uvs[v + 2 * pairs][1] != 0.0)) ++pairs;
      const std::size_t sections = pairs - 1;
      ASSERT_GE(sections, 1u) << "vertex " << v;
      ASSERT_LE(sections, static_cast<std::size_t>(std::fmax(1.0, a.maxH / a.subsectionH)));
      const auto& left = positions[v];
      const auto& right = positions[v + 1];
      const double width = std::hypot(left[0] - right[0], left[2] - right[2]);
      EXPECT_GE(width, a.minW - 1e-9);
      EXPECT_LE(width, a.maxW + 1e-9);
      EXPECT_LE(std::hypot((left[0] + right[0]) / 2, (left[2] + right[2]) / 2), a.radius + 1e-9);
      for (std::size_t k = 0; k < pairs; ++k) {
        const std::size_t l = v + 2 * k, r = l + 1;
        EXPECT_EQ(positions[l][0], left[0]);
        EXPECT_EQ(positions[r][2], right[2]);
        EXPECT_DOUBLE_EQ(positions[l][1], static_cast<double>(k) * a.subsectionH);
        EXPECT_EQ(positions[r][1], positions[l][1]);
        EXPECT_EQ(uvs[l][0], 0.0);
        EXPECT_EQ(uvs[r][0], 1.0);
        EXPECT_DOUBLE_EQ(uvs[l][1], static_cast<double>(k) / static_cast<double>(sections));
        // A horizontal unit normal across the blade's width.
        EXPECT_EQ(normals[l], normals[r]);
        EXPECT_EQ(normals[l][1], 0.0);
        EXPECT_NEAR(std::hypot(normals[l][0], normals[l][2]), 1.0, 1e-12);
        EXPECT_NEAR(normals[l][0] * (left[0] - right[0]) + normals[l][2] * (left[2] - right[2]), 0.0, 1e-12);
      }
      // One quad a section, wound left, left above, right above, right.
      for (std::size_t k = 0; k < sections; ++k, q += 4) {
        const auto b = static_cast<std::int64_t>(v + 2 * k);
        ASSERT_LT(q + 3, indices.size());
        EXPECT_EQ((std::vector<std::int64_t>(indices.begin() + q, indices.begin() + q + 4)),
                  (std::vector<std::int64_t>{b, b + 2, b + 3, b + 1}));
      }
      v += 2 * pairs;
    }
    EXPECT_EQ(q, indices.size()) << "submesh " << s;
  }
}

TEST_F(GrassGL, EveryBladeIsAColumnOfQuadsWithinTheDisc) {
  if (!HasContext()) return;
  SeedRandom(11);
  const GrassArgs tall{1.5, 300, 0.1, 0.3, 0.4, 1.0, 0.2};
  ExpectBladeShapes(*MakeGrass(tall), tall);
  // Blades lower than subsectionH still get one quad and finite coordinates.
  const GrassArgs low{1.0, 300, 0.1, 0.3, 0.05, 0.5, 0.25};
  auto grass = MakeGrass(low);
  ExpectBladeShapes(*grass, low);
  for (const auto& uv : grass->VertexArray_UV.at(0)) EXPECT_TRUE(std::isfinite(uv[1]));
}

// The same seed repeating a patch is the script suite's check; another seed must differ.
TEST_F(GrassGL, AnotherSeedMakesAnotherPatch) {
  if (!HasContext()) return;
  const GrassArgs args{2.0, 3500, 0.4, 0.6, 0.3, 0.6, 0.2};
  SeedRandom(42);
  auto first = MakeGrass(args);
  SeedRandom(43);
  auto other = MakeGrass(args);
  for (int s : {0, 1}) EXPECT_NE(first->VertexArray_Positon.at(s), other->VertexArray_Positon.at(s)) << s;
}

TEST_F(GrassGL, RefusedArgumentsMakeNoSubmesh) {
  if (!HasContext()) return;
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    const char* name;
    GrassArgs args;
    const char* message;
  } cases[] = {
      // subsectionH above maxH or 0, negative density, NaN radius, negative minH and too
      // many blades are the script suite's cases (test_water_grass.py).
      {"subsectionH negative", {2.0, 50, 0.4, 0.6, 0.3, 0.6, -0.2}, "subsectionH must be above 0"},
      {"negative width", {2.0, 50, -0.4, 0.6, 0.3, 0.6, 0.2}, "minW must be 0 or more"},
      {"negative height", {2.0, 50, 0.4, 0.6, 0.3, -0.6, 0.2}, "maxH must be 0 or more"},
      {"infinite density", {2.0, inf, 0.4, 0.6, 0.3, 0.6, 0.2}, "density must be a finite number, not inf"},
      {"too many sections", {2.0, 50, 0.4, 0.6, 0.3, 0.6, 1e-6}, "would make more than 4194304 vertices"},
  };
  for (const auto& c : cases) {
    auto grass = MakeNode<Grass>();
    grass->OnLoad(scene);
    const GrassArgs& a = c.args;
    try {
      grass->CreateGrass(a.radius, a.density, a.minW, a.maxW, a.minH, a.maxH, a.subsectionH);
      ADD_FAILURE() << c.name << ": no exception";
    } catch (const ValueError& e) {
      const std::string what = e.what();
      EXPECT_EQ(what.rfind("Vorn_3DGrass.CreateGrass: ", 0), 0u) << c.name << ": " << what;
      EXPECT_NE(what.find(c.message), std::string::npos) << c.name << ": " << what;
    }
    EXPECT_TRUE(grass->SubMeshList.empty()) << c.name;
    EXPECT_EQ(grass->statckR, 30.0) << c.name;
  }
}

TEST_F(GrassGL, StandOnGroundRaisesEachBladeByTheGroundBelowItsWorldXZ) {
  if (!HasContext()) return;
  // A patch under a parent: its world position is (10, 0, 5) before any update.
  auto parent = MakeNode<Vorn_3DGameNode>(8, 3, 1);
  parent->update(0.0);
  auto grass = MakeNode<Grass>(2, 0, 4, parent);
  grass->OnLoad(scene);
  {
    ConsoleCapture quiet;
    grass->CreateGrass(1.0, 3001, 0.1, 0.2, 0.3, 0.6, 0.2);
  }
  const auto before = grass->VertexArray_Positon;
  const auto uvs = grass->VertexArray_UV;
  scene->groundY = 1.5;
  scene->groundQueries.clear();
  grass->StandOnGround(true);

  // The ground is asked once for each edge of a blade, at its root's world x and z.
  std::vector<std::pair<double, double>> roots;
  for (const auto& [s, positions] : before) {
    const auto& after = grass->VertexArray_Positon.at(s);
    ASSERT_EQ(after.size(), positions.size());
    for (std::size_t v = 0; v < positions.size(); ++v) {
      if (uvs.at(s)[v][1] == 0.0) roots.emplace_back(positions[v][0] + 10.0, positions[v][2] + 5.0);
      EXPECT_EQ(after[v], VertexEntry<3>(positions[v][0], positions[v][1] + 1.5, positions[v][2]));
    }
    // The buffers carry the raised blades.
    const std::vector<float> interleaved = grass->InterleaveSubMesh(s);
    ASSERT_EQ(interleaved.size(), positions.size() * 8);
    EXPECT_FLOAT_EQ(interleaved[6], static_cast<float>(positions[0][1] + 1.5));
  }
  EXPECT_EQ(scene->groundQueries, roots);
}

TEST_F(GrassGL, StandOnGroundWithoutASceneChangesNothing) {
  if (!HasContext()) return;
  auto grass = MakeGrass({1.0, 20, 0.1, 0.2, 0.3, 0.6, 0.2});
  const Vec3Array before = grass->VertexArray_Positon.at(0);
  grass->sceneInstance.reset();
  ConsoleCapture console;
  grass->StandOnGround();
  EXPECT_EQ(console.lines(), std::vector<std::string>{"No SceneInstance"});
  EXPECT_EQ(grass->VertexArray_Positon.at(0), before);
}

// The window seen as world x -2..2, y -0.5..2.5 from the front.
class GrassSwingGL : public GrassGL {
 protected:
  void SetUp() override {
    GrassGL::SetUp();
    if (!HasContext()) return;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-2, 2, -0.5, 2.5, -10, 10);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
  }
  static std::array<int, 2> Px(double x, double y) {
    return {static_cast<int>((x + 2) / 4 * kWindowWidth), static_cast<int>((y + 0.5) / 3 * kWindowHeight)};
  }
  static bool Lit(const std::array<int, 2>& p) { return Pixel(p[0], p[1])[0] > 128; }
  // The whole window after drawing `node` at scene time t.
  std::vector<unsigned char> Frame(Vorn_3DGameNode& node, double t) {
    scene->currTime = t;
    glClear(GL_COLOR_BUFFER_BIT);
    node.draw();
    return WindowPixels();
  }
};

TEST_F(GrassSwingGL, BladesSwingWithSceneTimeByTheirSwingFields) {
  if (!HasContext()) return;
  // Every blade rooted at the origin, one unit tall in four sections (v equals height),
  // white through a white texture.
  SeedRandom(5);
  auto grass = MakeGrass({0.0, 40, 0.2, 0.2, 1.0, 1.0, 0.25});
  const TexturePixels white = std::make_shared<const std::vector<std::uint8_t>>(4, std::uint8_t{255});
  for (int s = 0; s < static_cast<int>(grass->SubMeshList.size()); ++s)
    grass->LoadSubMeshTextureFromImage(s, 0, white, "RGBA", 1, 1, false);
  grass->SetSwing(1.0, 0.5);

  // At time 0 the tips lean to +x by SwingRegion, half a turn later to -x; roots stay.
  Frame(*grass, 0.0);
  EXPECT_TRUE(Lit(Px(0.45, 0.9)) && !Lit(Px(-0.45, 0.9)));
  EXPECT_TRUE(Lit(Px(0.0, 0.02)));
  const auto leaning = Frame(*grass, 0.0);
  Frame(*grass, PI);
  EXPECT_TRUE(!Lit(Px(0.45, 0.9)) && Lit(Px(-0.45, 0.9)));
  EXPECT_TRUE(Lit(Px(0.0, 0.02)));
  EXPECT_TRUE(Frame(*grass, 0.0) == leaning) << "the same time draws the same picture";

  // SwingRegion 0 holds the blades still (the program's own default would not).
  grass->SetSwing(1.0, 0.0);
  EXPECT_TRUE(Frame(*grass, 0.0) == Frame(*grass, PI));
  const ProgramUniforms& u = GetProgramUniforms(Program(Vorn_3DFX::FX_GRASS));
  ASSERT_GE(u.uSwingSpeed, 0);
  ASSERT_GE(u.uSwingRegion, 0);
  grass->SetSwing(2.5, 0.25);
  Frame(*grass, 1.0);
  float speed = 0, region = 0;
  glGetUniformfv(Program(Vorn_3DFX::FX_GRASS), u.uSwingSpeed, &speed);
  glGetUniformfv(Program(Vorn_3DFX::FX_GRASS), u.uSwingRegion, &region);
  EXPECT_EQ(speed, 2.5f);
  EXPECT_EQ(region, 0.25f);
}

TEST_F(GrassSwingGL, APatchDrawsWhereItsNodeStands) {
  if (!HasContext()) return;
  // Blades rooted at the node, held still; the node one unit right of the origin.
  SeedRandom(5);
  auto grass = MakeGrass({0.0, 40, 0.2, 0.2, 1.0, 1.0, 0.25});
  const TexturePixels white = std::make_shared<const std::vector<std::uint8_t>>(4, std::uint8_t{255});
  for (int s = 0; s < static_cast<int>(grass->SubMeshList.size()); ++s)
    grass->LoadSubMeshTextureFromImage(s, 0, white, "RGBA", 1, 1, false);
  grass->SetSwing(1.0, 0.0);
  grass->SetXYZ(1.0, 0.0, 0.0);
  grass->UpdateMatrices();
  Frame(*grass, 0.0);
  EXPECT_TRUE(Lit(Px(1.0, 0.5)) && !Lit(Px(0.0, 0.5)));
  // Under another program the node's matrix reaches the GPU once, through uModelMatrix.
  grass->ApplyFX(Vorn_3DFX::FX_TEXTURE);
  Frame(*grass, 0.0);
  EXPECT_TRUE(Lit(Px(1.0, 0.5)) && !Lit(Px(0.0, 0.5)));
}

}  // namespace
}  // namespace vorn::test
