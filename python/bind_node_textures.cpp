// The texture operations of Vorn_3DGameNode and its 2D shapes.
#include <string>
#include <vector>

#include "bind_node.h"
#include "node/gl_enums.h"

namespace vorn::py_bind {
namespace {

using Node = Vorn_3DGameNode;

// bytes, bytearray or any contiguous buffer of bytes; None for no pixels.
TexturePixels pixels_arg(py::handle value, const char* where) {
  if (value.is_none()) return nullptr;
  if (!py::isinstance<py::bytes>(value) && !PyObject_CheckBuffer(value.ptr())) {
    throw py::type_error(std::string(where) + ": imgData must be bytes, a bytes-like object or None, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
  // bytes() of a buffer copies it in order, whatever its layout.
  py::object raw = py::reinterpret_borrow<py::object>(value);
  if (!py::isinstance<py::bytes>(value)) {
    PyObject* copy = PyBytes_FromObject(value.ptr());
    if (!copy) throw py::error_already_set();
    raw = py::reinterpret_steal<py::object>(copy);
  }
  char* data = nullptr;
  Py_ssize_t size = 0;
  if (PyBytes_AsStringAndSize(raw.ptr(), &data, &size) != 0) throw py::error_already_set();
  const auto* begin = reinterpret_cast<const std::uint8_t*>(data);
  return std::make_shared<const std::vector<std::uint8_t>>(begin, begin + size);
}

py::object record_to_py(const std::optional<TextureInfo>& rec) {
  if (!rec) return py::none();
  const TextureInfo& t = *rec;
  py::object data = t.imgData ? py::object(py::bytes(reinterpret_cast<const char*>(t.imgData->data()), t.imgData->size()))
                              : py::object(py::none());
  return make_list(t.channel, t.texID, data, t.Format, t.width, t.height, t.genFinish, t.mipMap, t.density);
}

}  // namespace

void bind_node_textures(NodeClass& cls) {
  cls.def("LoadSubMeshTextureFromFile", &Node::LoadSubMeshTextureFromFile, py::arg("submeshIndex"),
          py::arg("channel"), py::arg("fileName"), py::arg("mipMap") = true, py::arg("density") = 1.0,
          "Finds fileName (as given, else its first match in the resource index with the line\n"
          "\"<name>  has  <n>  same image.\" for several, else beside MeshFile), reads it (TGA,\n"
          "DDS, else PNG or JPEG) and appends it as a texture of the submesh on `channel`.\n"
          "A file not found prints \"Can't find texture: <name>\" and changes nothing.\n"
          "KeyError for an unknown submesh.")
      .def("LoadSubMeshCubeMapTextureFromFile", &Node::LoadSubMeshCubeMapTextureFromFile, py::arg("submeshIndex"),
           py::arg("cubeTextureDir"),
           "Builds a cube map from right.jpg, left.jpg, top.jpg, bottom.jpg, front.jpg and\n"
           "back.jpg of cubeTextureDir below the resource root, registers it with the resource\n"
           "manager and puts it on channel 0. True when done; a missing face prints\n"
           "\"SkyBox Texture  <file>  Lost !\" and gives False.")
      .def("MakeSubMeshBump", &Node::MakeSubMeshBump, py::arg("submeshIndex") = 0, py::arg("channel") = 1,
           "Derives a normal map from the channel 0 picture (written to \"bump.png\") and puts it\n"
           "on `channel`, unless a texture already stands on channel 1; then builds tangents and\n"
           "applies FX_DIFFUSE_TEXTURE_BUMP. Nothing for a submesh without texture entry.")
      .def("LoadTextureFromFile", &Node::LoadTextureFromFile, py::arg("fileName"),
           "Finds and reads one picture as RGBA and makes it the only texture (channel 0) of\n"
           "every submesh; the last submesh gets FX_DIFFUSE_TEXTURE.")
      .def(
          "LoadSubMeshTextureFromImage",
          [](Node& n, int submeshIndex, int channel, py::handle imgData, const std::string& Format, int width,
             int height, bool mipMap, double density) {
            n.LoadSubMeshTextureFromImage(submeshIndex, channel,
                                          pixels_arg(imgData, "Vorn_3DGameNode.LoadSubMeshTextureFromImage"), Format,
                                          width, height, mipMap, density);
          },
          py::arg("submeshIndex"), py::arg("channel"), py::arg("imgData"), py::arg("Format"), py::arg("width"),
          py::arg("height"), py::arg("mipMap") = true, py::arg("density") = 1.0,
          "Appends the record [channel, 0, imgData, Format, width, height, False, mipMap,\n"
          "density]; imgData holds rows from the bottom up, Format is \"RGBA\", \"RGB\" or \"CUBE\".\n"
          "The GL texture is made at the first draw. ValueError for another Format, a negative\n"
          "size or too few bytes.")
      .def("SetDynamicTextureID", &Node::SetDynamicTextureID, py::arg("texID"), py::arg("channel") = 0,
           "SetSubMeshDynamicTextureID on every submesh.")
      .def("SetSubMeshDynamicTextureID", &Node::SetSubMeshDynamicTextureID, py::arg("submeshIndex"), py::arg("texID"),
           py::arg("channel") = 0,
           "Appends the GL texture texID that the resource manager knows (render targets, cube\n"
           "maps) as a finished record; nothing for an unknown id or without a resource manager.")
      .def("SetSubMeshTextureDensity", &Node::SetSubMeshTextureDensity, py::arg("submeshIndex"), py::arg("channel"),
           py::arg("density"), "Writes the tiling density of every record on `channel`.")
      .def(
          "GetSubMeshTextureInfo",
          [](const Node& n, int submeshIndex, int channel) {
            return record_to_py(n.GetSubMeshTextureInfo(submeshIndex, channel));
          },
          py::arg("submeshIndex"), py::arg("channel"),
          "The first record on `channel` as a list of nine entries (channel, texID, imgData,\n"
          "Format, width, height, genFinish, mipMap, density), or None.")
      .def("Create2DShape", &Node::Create2DShape, py::arg("submeshName"), py::arg("shapeType") = glc::QUADS,
           "Adds a submesh of layout GL_T2F_V3F for screen-space drawing; returns its index.")
      .def("Draw2DRect", &Node::Draw2DRect, py::arg("left"), py::arg("top"), py::arg("width"), py::arg("height"),
           py::arg("r") = 1.0, py::arg("g") = 1.0, py::arg("b") = 1.0,
           "Makes the node a rectangle in pixels from the top left of the SCREEN_WIDTH x\n"
           "SCREEN_HEIGHT screen, coloured (r, g, b), drawn with Vorn_2DFX.FX_COLOR.")
      .def("Draw2DImage", &Node::Draw2DImage, py::arg("left"), py::arg("top"), py::arg("width"), py::arg("height"),
           py::arg("textureFile") = py::none(),
           "Makes the node a screen rectangle showing textureFile upright (none: no texture),\n"
           "drawn with Vorn_2DFX.FX_COLOR_TEXTURE.");
}

}  // namespace vorn::py_bind
