// Screen-space rectangles and images: four corners written straight in normalised
// device coordinates, drawn by the 2D programs without a camera.
#include <array>
#include <string>

#include "core/errors.h"
#include "core/screen_settings.h"
#include "node/game_node.h"
#include "shader/fx_2d.h"

namespace vorn {
namespace {

// Pixels from the top left of a SCREEN_WIDTH x SCREEN_HEIGHT screen to -1..1, y up.
struct NDCRect {
  double left, top, right, bottom;
};

NDCRect to_ndc(double left, double top, double width, double height, const char* operation) {
  const double halfW = SCREEN_WIDTH / 2.0, halfH = SCREEN_HEIGHT / 2.0;
  if (halfW == 0.0 || halfH == 0.0) {
    throw ZeroDivisionError(std::string("Vorn_3DGameNode.") + operation + ": SCREEN_WIDTH and SCREEN_HEIGHT are " +
                            std::to_string(SCREEN_WIDTH) + " x " + std::to_string(SCREEN_HEIGHT));
  }
  return {left / halfW - 1.0, 1.0 - top / halfH, (left + width) / halfW - 1.0, 1.0 - (top + height) / halfH};
}

}  // namespace

int Vorn_3DGameNode::Create2DShape(const std::string& submeshName, int shapeType) {
  const int submeshIndex = static_cast<int>(SubMeshList.size());
  SubMeshList.push_back(submeshName);
  VertexDescArray.set(submeshIndex, glc::T2F_V3F);
  VertexArray_Custom.set(submeshIndex, {});
  VertexArray_Positon.set(submeshIndex, {});
  VertexArray_Normal.set(submeshIndex, {});
  VertexArray_UV.set(submeshIndex, {});
  VertexArray_BoneIndics.set(submeshIndex, {});
  VertexArray_BoneWeight.set(submeshIndex, {});
  VIndexArray.set(submeshIndex, {});
  TextureArray.set(submeshIndex, {});
  // No tangents and no alpha mode: the draw prints the index of such a submesh.
  SetSubMeshShapeType(submeshIndex, shapeType);
  withNormal = false;
  withTexUV = true;
  withSkin = false;
  return submeshIndex;
}

void Vorn_3DGameNode::Draw2DRect(double left, double top, double width, double height, double r, double g,
                                 double b) {
  const NDCRect f = to_ndc(left, top, width, height, "Draw2DRect");
  const int submeshIndex = Create2DShape("submesh_0");
  is2DMode = true;
  PushQuadVertex_Postion(submeshIndex, std::array<double, 12>{f.left, f.top, 0, f.right, f.top, 0, f.right, f.bottom,
                                                              0, f.left, f.bottom, 0});
  // The layout carries texture coordinates: the buffer needs them even here.
  PushQuadVertex_UV(0, std::array<double, 8>{0.0, 1.0, 1.0, 1.0, 1.0, 0.0, 0.0, 0.0});
  // The colour program draws the submesh colour.
  SetSubMeshColor(submeshIndex, r, g, b);
  ApplySubMeshFX(submeshIndex, Vorn_2DFX::FX_COLOR);
  ApplyFX(Vorn_2DFX::FX_COLOR);
  // Indices and texture coordinates go to submesh 0, whichever index the shape got.
  PushQuadVIndex(0, 0, 1, 2, 3);
  BuildVBO();
}

void Vorn_3DGameNode::Draw2DImage(double left, double top, double width, double height,
                                  const std::optional<std::string>& textureFile) {
  const NDCRect f = to_ndc(left, top, width, height, "Draw2DImage");
  const int submeshIndex = Create2DShape("submesh_0");
  is2DMode = true;
  PushQuadVertex_Postion(submeshIndex, std::array<double, 12>{f.left, f.top, 0, f.right, f.top, 0, f.right, f.bottom,
                                                              0, f.left, f.bottom, 0});
  // Texture rows run from the bottom up, so v = 1 is the picture's top edge.
  PushQuadVertex_UV(0, std::array<double, 8>{0.0, 1.0, 1.0, 1.0, 1.0, 0.0, 0.0, 0.0});
  if (textureFile) LoadSubMeshTextureFromFile(0, 0, *textureFile);
  ApplySubMeshFX(submeshIndex, Vorn_2DFX::FX_COLOR_TEXTURE);
  ApplyFX(Vorn_2DFX::FX_COLOR_TEXTURE);
  PushQuadVIndex(0, 0, 1, 2, 3);
  BuildVBO();
}

}  // namespace vorn
