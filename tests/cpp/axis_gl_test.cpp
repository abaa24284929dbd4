// The gizmo's drag against known GL matrices, and its draw read back from the window.
#include <array>
#include <cstdint>

#include "camera/camera.h"
#include "core/errors.h"
#include "core/gl_api.h"
#include "gl_scene.h"
#include "overlay/axis.h"

namespace vorn {
namespace {

// An orthographic view of 32 by 24 world units on the 320 by 240 window, looking down
// -z: one world unit is ten pixels, world +y is up the screen (window y down).
class AxisGL : public test::NodeGLTest {
 protected:
  void SetUp() override {
    NodeGLTest::SetUp();
    if (!HasContext()) return;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-16.0, 16.0, -12.0, 12.0, -100.0, 100.0);
    glMatrixMode(GL_MODELVIEW);
    scene->activeCamera = MakeNode<Vorn_3DCamera>(0, 0, 10);
    node = MakeNode<Vorn_3DGameNode>();
    node->update(0.0);
    axis = MakeNode<Vorn_3DAxis>();
    axis->Binding(node);
    axis->SetType("t");
  }
  // One drag step on a freshly placed node; returns how far the node moved.
  double Step(const char* picked, double ox, double oy, double ry = 0.0) {
    node->SetXYZ(0.0, 0.0, 0.0);
    node->SetRY(ry);
    node->update(0.0);
    axis->PickedAxis.emplace(picked);
    axis->DrogMoving(ox, oy);
    return node->GetX() + node->GetY() + node->GetZ();
  }
  std::array<std::uint8_t, 3> Pixel(int x, int yFromTop) {
    std::array<std::uint8_t, 3> rgb{};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, test::kWindowHeight - 1 - yFromTop, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    return rgb;
  }

  std::shared_ptr<Vorn_3DGameNode> node;
  std::shared_ptr<Vorn_3DAxis> axis;
};

TEST_F(AxisGL, DragStepGrowsWithTheSquareOfTheOffsetAlongTheAxisOnScreen) {
  // Without a scene the drag has no camera to project with.
  axis->PickedAxis.emplace("x");
  EXPECT_THROW(axis->DrogMoving(10.0, 0.0), AttributeError);
  axis->OnLoad(scene);

  struct Case {
    const char* name;
    const char* picked;
    double ox, oy, ry, step;
  };
  // x offsets weigh 0.002 * 800 / 320, y offsets 0.002 * 600 / 240: both 0.005.
  const Case cases[] = {
      {"along x", "x", 6.0, 0.0, 0.0, 0.5 * 6 * 6 * 0.005},
      {"twice as far, four times the step", "x", 12.0, 0.0, 0.0, 0.5 * 12 * 12 * 0.005},
      {"against x", "x", -10.0, 0.0, 0.0, -0.5 * 10 * 10 * 0.005},
      {"across x", "x", 0.0, 10.0, 0.0, 0.0},
      {"slanted: both parts weighed by the x part", "x", 10.0, 4.0, 0.0, 0.5 * (10 * 10 + 4 * 10) * 0.005},
      {"each part clamped to 1", "x", 30.0, 0.0, 0.0, 0.5},
      {"mouse up moves up y", "y", 0.0, -10.0, 0.0, 0.5 * 10 * 10 * 0.005},
      {"mouse down moves down y", "y", 3.0, 10.0, 0.0, -0.5 * (3 * 10 + 10 * 10) * 0.005},
      {"z points at the viewer: no screen direction", "z", 10.0, 10.0, 0.0, 0.0},
      {"turned node: its x shows along z, away from the viewer", "x", 10.0, 0.0, 90.0, 0.0},
      {"turned node: its z shows along x", "z", 10.0, 0.0, 90.0, 0.5 * 10 * 10 * 0.005},
  };
  for (const auto& c : cases) EXPECT_NEAR(Step(c.picked, c.ox, c.oy, c.ry), c.step, 1e-9) << c.name;

  // Through the draw: a stored drag is carried out once and the offsets cleared.
  node->SetXYZ(0.0, 0.0, 0.0);
  node->SetRY(0.0);
  node->update(0.0);
  axis->PickedAxis.emplace("x");
  ASSERT_TRUE(axis->Drag(10.0, 0.0));
  axis->draw_picktriangle();
  axis->draw_picktriangle();
  EXPECT_NEAR(node->GetX(), 0.25, 1e-9);
  EXPECT_EQ(axis->offsetX, 0.0);
}

TEST_F(AxisGL, DrawsTheArrowsOnTheBoundNodeInTheirColours) {
  node->SetXYZ(-5.0, 3.0, 0.0);
  node->update(0.0);  // the fixture cleared the window to black, depth test off

  // Unbound: nothing.
  axis->Binding(nullptr);
  axis->draw();
  EXPECT_EQ(Pixel(160 - 50 + 15, 120 - 30), (std::array<std::uint8_t, 3>{0, 0, 0}));

  // Bound to the node at (-5, 3): window (110, 90). No program here, so the fixed
  // function stack carries the node's matrix.
  axis->Binding(node);
  node->SetBoundingBoxVisible(false);
  axis->draw();
  EXPECT_EQ(Pixel(110 + 15, 90), (std::array<std::uint8_t, 3>{255, 0, 0}));   // x arrow
  EXPECT_EQ(Pixel(110, 90 - 15), (std::array<std::uint8_t, 3>{0, 255, 0}));   // y arrow
  EXPECT_EQ(Pixel(110 + 15, 90 - 15), (std::array<std::uint8_t, 3>{0, 0, 0}));  // between
  EXPECT_FALSE(node->IsBoundingBoxVisible());

  // The picked axis shows in its own colour.
  axis->PickedAxis.emplace("x");
  axis->draw();
  EXPECT_EQ(Pixel(110 + 15, 90), (std::array<std::uint8_t, 3>{255, 255, 0}));
}

}  // namespace
}  // namespace vorn
