// The scene's full-screen modes: VR split, deferred-light and ambient-occlusion
// previews, the post-pass quad, and the preview camera maps.
#include "bind_common.h"
#include "node_trampoline.h"
#include "scene/scene.h"

namespace vorn::py_bind {
namespace {

// A preview map as a dict in insertion order; the plain picture's camera is under
// None, so scene.DeferLightCamera[None] reads it. A copy: the engine's map changes
// only through the Open operations.
py::dict camera_map(const Vorn_3Dcene::PreviewCameraMap& map) {
  py::dict out;
  for (const auto& [fx, camera] : map) {
    out[fx ? py::object(py::int_(*fx)) : py::object(py::none())] = node_to_py(camera);
  }
  return out;
}

}  // namespace

void bind_scene_fullscreen(py::class_<Vorn_3Dcene, NodeScene, std::shared_ptr<Vorn_3Dcene>>& cls) {
  using Scene = Vorn_3Dcene;
  cls.def("OpenVRMode", &Scene::OpenVRMode, py::arg("dOcean") = "cardboard", py::arg("Fov") = 45,
          py::arg("ZNear") = 0.1, py::arg("ZFar") = 500,
          "Splits the window for two eyes: VRLeftCamera and VRRightCamera (children of the\n"
          "active camera at (0.1, 0.0, -1.0), half-window aspect) render into targets that\n"
          "VRLeftEyeImage and VRRightEyeImage show through FX_VRMODE_LEFT and\n"
          "FX_VRMODE_RIGHT; VRLogoImage shows ico/vorn.png of the working directory when\n"
          "it exists. The images go to openGLScene. dOcean is not used. AttributeError\n"
          "without openGLScene, RuntimeError before InitGL; nothing is made then.")
      .def("OpenDeferLight", &Scene::OpenDeferLight,
           "Deferred-light preview: a camera per FX of [FX_XYZ, FX_NORMAL, FX_DIFFUSE, None]\n"
           "(clones of the active camera, fog off) in DeferLightCamera, a labelled 200 by 200\n"
           "tile of each target, and the lit result (FX_DEFER_LIGHT, tag \"DeferLight\").\n"
           "Again: known FX are skipped, the result image is made anew.")
      .def("OpenSSAO", &Scene::OpenSSAO,
           "Ambient-occlusion preview: a camera per FX of [FX_XYZ, FX_DEPTH,\n"
           "FX_NORMAL_VIEW_INVERSE, FX_DIFFUSE, None] in SSAOCamera, labelled tiles, a fresh\n"
           "64-sample kernel in SSAOKernelList and the grey occlusion result (FX_SSAO, tag\n"
           "\"SSAO\"). Again: known FX are skipped, result and kernel are made anew.")
      .def("RenderPostFXRect", &Scene::RenderPostFXRect,
           "Draws the full-screen quad of a post pass in clip space (no matrices), with face\n"
           "culling off while it draws.")
      .def_property_readonly(
          "DeferLightCamera", [](const Scene& s) { return camera_map(s.DeferLightCamera); },
          "Object FX id (None for the plain picture) to preview camera, in insertion order (a copy).")
      .def_property_readonly(
          "SSAOCamera", [](const Scene& s) { return camera_map(s.SSAOCamera); },
          "Object FX id (None for the plain picture) to preview camera, in insertion order (a copy).");
}

}  // namespace vorn::py_bind
