// The resource manager.
#include <memory>

#include "app/globals.h"
#include "bind_common.h"
#include "resource/image_load_result.h"
#include "resource/res_manager.h"

namespace vorn::py_bind {
namespace {

py::object res_path_to_py(const ResPath& path) {
  if (const auto* one = std::get_if<std::string>(&path)) return py::str(*one);
  if (const auto* many = std::get_if<std::vector<std::string>>(&path)) return py::cast(*many);
  return py::none();
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
      .def_readwrite("ETC_Support", &PyGameResManager::ETC_Support)
      .def_readwrite("DXT_Support", &PyGameResManager::DXT_Support)
      .def_readwrite("PVR_Support", &PyGameResManager::PVR_Support)
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
      .def_readwrite("ImageDict_MemManage_List", &PyGameResManager::ImageDict_MemManage_List)
      .def_readwrite("ImageDict_MemManage_Total", &PyGameResManager::ImageDict_MemManage_Total)
      .def_readwrite("ImageDict_MemManage_Count", &PyGameResManager::ImageDict_MemManage_Count)
      .def_readwrite("SceneJsonDict", &PyGameResManager::SceneJsonDict,
                     "Paths of the scene side files (<scene>_Res.Json) found below Scene.")
      .def_readwrite("soundPlayCount", &PyGameResManager::soundPlayCount)
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
