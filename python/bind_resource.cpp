// The resource manager.
#include <memory>

#include "bind_common.h"
#include "core/screen_settings.h"
#include "resource/image_load_result.h"
#include "resource/res_manager.h"
#include "resource/res_manager.h"
#include "shader/fx_manage.h"

namespace vorn::py_bind {
namespace {

py::object res_path_to_py(const ResPath& path) {
  if (const auto* one = std::get_if<std::string>(&path)) return py::str(*one);
  if (const auto* many = std::get_if<std::vector<std::string>>(&path)) return py::cast(*many);
  return py::none();
}

py::list dynamic_record_to_py(const DynamicTextureRecord& r) {
  py::list out;
  out.append(r.Width);
  out.append(r.Height);
  out.append(r.Format);
  out.append(r.Depth);
  return out;
}

}  // namespace

void bind_resource(py::module_& m) {
  py::class_<PyGameResManager, std::shared_ptr<PyGameResManager>>(
      m, "PyGameResManager",
      "The resource manager: builds the shader manager (FXManagerInstance), reads the GL\n"
      "extension list and indexes every file below the resource root by lower-case name.\n"
      "Needs a current GL context. Paths in the index are joined with '/'.")
      .def(py::init([](const std::string& resdir) { return PyGameResManager::Create(resdir); }), py::arg("resdir"),
           "PyGameResManager(resdir): stores itself in ResManagerInstance and scans resdir.")
      .def_readwrite("ExtensionList", &PyGameResManager::ExtensionList, "GL extension names.")
      .def_readwrite("ETC_Support", &PyGameResManager::ETC_Support, "Whether the driver lists ETC1 compression.")
      .def_readwrite("DXT_Support", &PyGameResManager::DXT_Support, "Whether the driver lists S3TC/DXT1 compression.")
      .def_readwrite("PVR_Support", &PyGameResManager::PVR_Support, "Whether the driver lists PVRTC compression.")
      .def_readwrite("resdir", &PyGameResManager::resdir, "The resource root as given.")
      .def_readwrite("fontdir", &PyGameResManager::fontdir, "Font folder.")
      .def_property_readonly(
          "fileDict",
          [](const PyGameResManager& r) {
            py::dict out;
            for (const auto& [name, paths] : r.fileDict) out[py::str(name)] = py::cast(paths);
            return out;
          },
          "Lower-case file name to the paths that bear it, in scan order (a copy).")
      .def_readwrite("ImageDict_MemManage_List", &PyGameResManager::ImageDict_MemManage_List, "File names by last use, oldest first.")
      .def_readwrite("ImageDict_MemManage_Total", &PyGameResManager::ImageDict_MemManage_Total, "Intended capacity (100); nothing is evicted.")
      .def_readwrite("ImageDict_MemManage_Count", &PyGameResManager::ImageDict_MemManage_Count, "Number of distinct names recorded.")
      .def_readwrite("SceneJsonDict", &PyGameResManager::SceneJsonDict,
                     "Paths of the scene side files (<scene>_Res.Json) found below Scene.")
      .def_readwrite("soundPlayCount", &PyGameResManager::soundPlayCount, "Sounds played so far.")
      .def("GetResRootDir", &PyGameResManager::GetResRootDir, "The resource root.")
      .def("GetSceneList", &PyGameResManager::GetSceneList, "The scene side files found by the scan.")
      .def("SetFontDir", &PyGameResManager::SetFontDir, py::arg("path"), "Sets the font folder.")
      .def("CheckCompressTextureFormat_ETC", &PyGameResManager::CheckCompressTextureFormat_ETC,
           "Whether the driver lists ETC1 compression.")
      .def("CheckCompressTextureFormat_DXT", &PyGameResManager::CheckCompressTextureFormat_DXT,
           "Whether the driver lists S3TC/DXT1 compression.")
      .def("CheckCompressTextureFormat_PVR", &PyGameResManager::CheckCompressTextureFormat_PVR,
           "Whether the driver lists PVRTC compression.")
      .def(
          "GetResPath",
          [](const PyGameResManager& r, const std::string& filename, std::optional<std::string> dirName) {
            return res_path_to_py(r.GetResPath(filename, dirName ? &*dirName : nullptr));
          },
          py::arg("filename"), py::arg("dirName") = py::none(),
          "None if no file bears the name; the first path containing dirName/filename when\n"
          "dirName is given and matches; otherwise the list of every path with that name.")
      .def(
          "FoundAllResFile",
          [](PyGameResManager& r, const std::string& parentDir, std::optional<std::string> dirType) {
            r.FoundAllResFile(parentDir, dirType ? &*dirType : nullptr);
          },
          py::arg("parentDir"), py::arg("dirType") = py::none(), "Adds the files below parentDir to the index.")
      .def(
          "LoadImageFile",
          [](PyGameResManager& r, const std::string& fileName, std::optional<std::string> dirName) {
            return load_result_to_py(r.LoadImageFile(fileName, dirName));
          },
          py::arg("fileName"), py::arg("dirName") = py::none(),
          "(image, width, height, flag) of a PNG, JPG, TGA or DDS found as given or in the\n"
          "index; (None, 0, 0, False) for anything that does not load.")
      .def(
          "LoadTGA", [](PyGameResManager& r, const std::string& f) { return load_result_to_py(r.LoadTGA(f)); },
          py::arg("fileName"), "(image, width, height, IsRGBA) of a TGA, or the failure value.")
      .def(
          "LoadDDS", [](PyGameResManager& r, const std::string& f) { return load_result_to_py(r.LoadDDS(f)); },
          py::arg("fileName"), "(image, width, height, IsRGBA) of a DDS, or the failure value.")
      .def("ManageImageMemory", &PyGameResManager::ManageImageMemory, py::arg("fileName"),
           "Records a use of fileName (the list keeps the order of last use).")
      .def("ReleaseAllImageMemeory", &PyGameResManager::ReleaseAllImageMemeory,
           "Empties the image record; GL textures are not touched.")
      .def("GetImageListFiles", &PyGameResManager::GetImageListFiles, py::arg("fileName"),
           "The PNG files that share the path of fileName up to its last '_'.")
      .def_property_readonly(
          "ImageDict",
          [](const PyGameResManager& r) {
            py::dict out;
            for (const auto& [name, result] : r.ImageDict) out[py::str(name)] = load_result_to_py(result);
            return out;
          },
          "File name to load result (stays empty).")
      .def_property_readonly(
          "DynamicTextureDict",
          [](const PyGameResManager& r) {
            py::dict out;
            for (const auto& [id, record] : r.DynamicTextureDict) out[py::int_(id)] = dynamic_record_to_py(record);
            return out;
          },
          "GL texture id -> [Width, Height, Format, Depth] of each generated texture (a copy).")
      .def_property_readonly(
          "RenderTargetFrameBufferDict",
          [](const PyGameResManager& r) {
            py::dict out;
            for (const auto& [id, frameBuffer] : r.RenderTargetFrameBufferDict) out[py::int_(id)] = frameBuffer;
            return out;
          },
          "Render-target texture id -> its frame buffer id (a copy).")
      .def("AddDynamicTexture", &PyGameResManager::AddDynamicTexture, py::arg("texID"), py::arg("Width"),
           py::arg("Height"), py::arg("Format"), py::arg("Depth"),
           "Records a generated texture: DynamicTextureDict[texID] = [Width, Height, Format, Depth].")
      .def(
          "GetDynamicTexture",
          [](const PyGameResManager& r, unsigned textID) -> py::object {
            if (const DynamicTextureRecord* record = r.GetDynamicTexture(textID)) return dynamic_record_to_py(*record);
            return py::none();
          },
          py::arg("textID"), "[Width, Height, Format, Depth] of a generated texture, or None.")
      .def("GetRenderTargetTextureFrameBuffer", &PyGameResManager::GetRenderTargetTextureFrameBuffer,
           py::arg("textID"), "The frame buffer of a render-target texture, or None.")
      .def("AddSSAORandTexture", &PyGameResManager::AddSSAORandTexture, py::arg("Width") = 10, py::arg("Height") = 10,
           "A new Width x Height noise texture for ambient occlusion (R and G random, B 0,\n"
           "repeating, linear filters), recorded as [Width, Height, 'RGB', 24]. Returns its id.\n"
           "ValueError for a negative or oversized size.")
      .def("CreateRenderTargetTexture", &PyGameResManager::CreateRenderTargetTexture, py::arg("texWidth") = 0,
           py::arg("texHeight") = 0, py::arg("IsDepthBuffer") = false,
           "A colour texture with its own frame buffer and depth-stencil render buffer, for\n"
           "Vorn_3DGameNode.SetRenderTargetTexture. A side of 0 or less takes SCREEN_WIDTH /\n"
           "SCREEN_HEIGHT. The IsDepthBuffer variant sets no texture filters. Returns the\n"
           "texture id; nothing releases it.")
      .def(
          "MakeBumpImage",
          [](PyGameResManager& r, const std::string& fileName) { return load_result_to_py(r.MakeBumpImage(fileName)); },
          py::arg("fileName"),
          "(image, width, height, False): an RGB normal map of the PNG or JPG of that name in\n"
          "the index, its brightness taken as height. A flat picture gives (0, 0, 255); R\n"
          "and G hold the positive part of the normal's x and y. (None, 0, 0, False) when\n"
          "the file is not found or not readable.")
      .def("ListSkyBoxTexture", &PyGameResManager::ListSkyBoxTexture,
           "Entries of SkyBox: a folder gives its left.jpg path, a file its own path.")
      .def("ListTerrainDir", &PyGameResManager::ListTerrainDir, "The folders below Terrain.")
      .def("ListOceanDir", &PyGameResManager::ListOceanDir, "The deep.png path of each folder below Ocean.");

  register_global("ResManagerInstance",
                  GlobalSlot{[]() -> py::object { return py::cast(ResManagerInstance); },
                             [](py::handle value) {
                               if (!value.is_none() && !py::isinstance<PyGameResManager>(value)) {
                                 throw py::type_error("ResManagerInstance must be a PyGameResManager or None");
                               }
                               ResManagerInstance = value.is_none() ? nullptr
                                                                    : value.cast<std::shared_ptr<PyGameResManager>>();
                             },
                             "The one PyGameResManager; its constructor stores itself here."});
}

}  // namespace vorn::py_bind
