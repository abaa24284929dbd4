// Vorn_3DFX dispatch: which vertex and pixel operation serves which identifier.
#include "shader/fx_3d.h"

#include "core/errors.h"

namespace vorn {
namespace {

struct CatalogueEntry {
  int id;
  const char* name;
  std::string (Vorn_3DFX::*vs)();
  std::string (Vorn_3DFX::*ps)();
};

// Rows without a vertex or pixel operation are deliberate gaps: the identifier exists
// and may be asked for, but that side has no text.
constexpr CatalogueEntry kCatalogue[] = {
    {Vorn_3DFX::FX_BEGIN, "FX_BEGIN", nullptr, nullptr},
    {Vorn_3DFX::FX_DEPTH, "FX_DEPTH", &Vorn_3DFX::GetVS_Depth, &Vorn_3DFX::GetPS_Depth},
    {Vorn_3DFX::FX_XYZ, "FX_XYZ", &Vorn_3DFX::GetVS_XYZ, &Vorn_3DFX::GetPS_XYZ},
    {Vorn_3DFX::FX_COLOR, "FX_COLOR", &Vorn_3DFX::GetVS_Color, &Vorn_3DFX::GetPS_Color},
    {Vorn_3DFX::FX_NORMAL, "FX_NORMAL", &Vorn_3DFX::GetVS_Normal, &Vorn_3DFX::GetPS_Normal},
    {Vorn_3DFX::FX_NORMAL_VIEW_INVERSE, "FX_NORMAL_VIEW_INVERSE",
     &Vorn_3DFX::GetVS_Normal_ViewInverse,
     &Vorn_3DFX::GetPS_Normal_Inverse},
    {Vorn_3DFX::FX_SPECULAR, "FX_SPECULAR", &Vorn_3DFX::GetVS_Specular, &Vorn_3DFX::GetPS_Specular},
    {Vorn_3DFX::FX_DIFFUSE, "FX_DIFFUSE", &Vorn_3DFX::GetVS_Diffuse, &Vorn_3DFX::GetPS_Diffuse},
    {Vorn_3DFX::FX_DIFFUSE_SPECULAR, "FX_DIFFUSE_SPECULAR",
     &Vorn_3DFX::GetVS_Diffuse_Specular,
     &Vorn_3DFX::GetPS_Diffuse_Specular},
    {Vorn_3DFX::FX_DIFFUSE_ENVREFLECT, "FX_DIFFUSE_ENVREFLECT",
     &Vorn_3DFX::GetVS_Diffuse_EnvReflect,
     &Vorn_3DFX::GetPS_Diffuse_EnvReflect},
    {Vorn_3DFX::FX_TEXTURE, "FX_TEXTURE", &Vorn_3DFX::GetVS_Texture, &Vorn_3DFX::GetPS_Texture},
    {Vorn_3DFX::FX_POINTSPRITE, "FX_POINTSPRITE", &Vorn_3DFX::GetVS_PointSprite, &Vorn_3DFX::GetPS_PointSprite},
    {Vorn_3DFX::FX_TEXTURE_SHADOWMAP, "FX_TEXTURE_SHADOWMAP",
     &Vorn_3DFX::GetVS_Texture_ShadowMap,
     &Vorn_3DFX::GetPS_Texture_ShadowMap},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE, "FX_DIFFUSE_TEXTURE",
     &Vorn_3DFX::GetVS_Diffuse_Texture,
     &Vorn_3DFX::GetPS_Diffuse_Texture},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_SPECULAR, "FX_DIFFUSE_TEXTURE_SPECULAR",
     &Vorn_3DFX::GetVS_Diffuse_Texture_Specular,
     &Vorn_3DFX::GetPS_Diffuse_Texture_Specular},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP, "FX_DIFFUSE_TEXTURE_BUMP",
     &Vorn_3DFX::GetVS_Diffuse_Texture_Bump,
     &Vorn_3DFX::GetPS_Diffuse_Texture_Bump},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_SHADOWMAP, "FX_DIFFUSE_TEXTURE_SHADOWMAP",
     &Vorn_3DFX::GetVS_Diffuse_Texture_ShadowMap,
     nullptr},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_ENVREFLECT, "FX_DIFFUSE_TEXTURE_ENVREFLECT",
     &Vorn_3DFX::GetVS_Diffuse_Texture_EnvReflect,
     &Vorn_3DFX::GetPS_Diffuse_Texture_EnvReflect},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR, "FX_DIFFUSE_TEXTURE_ENVREFLECT_SPECULAR",
     &Vorn_3DFX::GetVS_Diffuse_Texture_EnvReflect_Specular,
     &Vorn_3DFX::GetPS_Diffuse_Texture_EnvReflect_Specular},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_PTLIGHT, "FX_DIFFUSE_TEXTURE_PTLIGHT",
     &Vorn_3DFX::GetVS_Diffuse_Texture_PTLight,
     &Vorn_3DFX::GetPS_Diffuse_Texture_PTLight},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT, "FX_DIFFUSE_TEXTURE_SPECULAR_PTLIGHT",
     &Vorn_3DFX::GetVS_Diffuse_Texture_Specular_PTLight,
     &Vorn_3DFX::GetPS_Diffuse_Texture_Specular_PTLight},
    {Vorn_3DFX::FX_SKYBOX, "FX_SKYBOX", &Vorn_3DFX::GetVS_SkyBox, &Vorn_3DFX::GetPS_SkyBox},
    {Vorn_3DFX::FX_SKYSPHERE, "FX_SKYSPHERE", &Vorn_3DFX::GetVS_SkySphere, &Vorn_3DFX::GetPS_SkySphere},
    {Vorn_3DFX::FX_COLOR_SKIN, "FX_COLOR_SKIN", nullptr, nullptr},
    {Vorn_3DFX::FX_DIFFUSE_SKIN, "FX_DIFFUSE_SKIN", &Vorn_3DFX::GetVS_Diffuse_Skin, &Vorn_3DFX::GetPS_Diffuse},
    {Vorn_3DFX::FX_DIFFUSE_SPECULAR_SKIN, "FX_DIFFUSE_SPECULAR_SKIN",
     &Vorn_3DFX::GetVS_Diffuse_Specular_Skin,
     &Vorn_3DFX::GetPS_Diffuse_Specular},
    {Vorn_3DFX::FX_TEXTURE_SKIN, "FX_TEXTURE_SKIN", &Vorn_3DFX::GetVS_Texture_Skin, &Vorn_3DFX::GetPS_Texture},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_SKIN, "FX_DIFFUSE_TEXTURE_SKIN",
     &Vorn_3DFX::GetVS_Diffuse_Texture_Skin,
     &Vorn_3DFX::GetPS_Diffuse_Texture},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_SPECULAR_SKIN, "FX_DIFFUSE_TEXTURE_SPECULAR_SKIN",
     &Vorn_3DFX::GetVS_Diffuse_Texture_Specular_Skin,
     &Vorn_3DFX::GetPS_Diffuse_Texture_Specular},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_BUMP_SKIN, "FX_DIFFUSE_TEXTURE_BUMP_SKIN", nullptr, nullptr},
    {Vorn_3DFX::FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN, "FX_DIFFUSE_TEXTURE_PTLIGHT_SKIN", nullptr, nullptr},
    {Vorn_3DFX::FX_GRASS, "FX_GRASS", &Vorn_3DFX::GetVS_Grass, &Vorn_3DFX::GetPS_Grass},
    {Vorn_3DFX::FX_OCEAN, "FX_OCEAN", &Vorn_3DFX::GetVS_Ocean, &Vorn_3DFX::GetPS_Ocean},
    {Vorn_3DFX::FX_TERRAIN, "FX_TERRAIN", &Vorn_3DFX::GetVS_Terrain, &Vorn_3DFX::GetPS_Terrain},
    {Vorn_3DFX::FX_TILEDMAP, "FX_TILEDMAP", &Vorn_3DFX::GetVS_TiledMap, &Vorn_3DFX::GetPS_TiledMap},
    {Vorn_3DFX::FX_AXIS, "FX_AXIS", &Vorn_3DFX::GetVS_Axis, &Vorn_3DFX::GetPS_Color},
    {Vorn_3DFX::FX_END, "FX_END", nullptr, nullptr},
};

const CatalogueEntry* Find(int FXID) {
  for (const CatalogueEntry& entry : kCatalogue) {
    if (entry.id == FXID) return &entry;
  }
  return nullptr;
}

}  // namespace

std::optional<std::string> Vorn_3DFX::GetVS(int FXID) {
  const CatalogueEntry* entry = Find(FXID);
  if (!entry || !entry->vs) return std::nullopt;
  return (this->*entry->vs)();
}

std::optional<std::string> Vorn_3DFX::GetPS(int FXID) {
  const CatalogueEntry* entry = Find(FXID);
  if (!entry || !entry->ps) return std::nullopt;
  return (this->*entry->ps)();
}

const char* Vorn_3DFX::IdentifierName(int FXID) {
  const CatalogueEntry* entry = Find(FXID);
  return entry ? entry->name : nullptr;
}

Vorn_Shader_Code& Vorn_3DFX::NewCode() {
  shaderCode = std::make_shared<Vorn_Shader_Code>();
  return *shaderCode;
}

Vorn_Shader_Code& Vorn_3DFX::CurrentCode(const char* operation) {
  if (!shaderCode) {
    throw AttributeError(std::string("Vorn_3DFX.") + operation +
                         ": no vertex text was generated before (shaderCode is None); call GetVS first");
  }
  return *shaderCode;
}

}  // namespace vorn
