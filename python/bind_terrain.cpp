// Vorn_3DTerrain: the plane whose heights and textures come from files.
#include <string>

#include "bind_node.h"
#include "landscape/terrain.h"

namespace vorn::py_bind {

void bind_terrain(py::module_& m) {
  using Terrain = Vorn_3DTerrain;
  py::class_<Terrain, Vorn_3DPlane, PyNode<Terrain>, std::shared_ptr<Terrain>> cls(
      m, "Vorn_3DTerrain",
      "A Vorn_3DPlane whose heights and textures come from files: a height file gives\n"
      "the grid, a blend file the blend map (channel 0) and five layer textures with\n"
      "their repeat densities (channels 1 to 5) that FX_TERRAIN mixes. NodeType\n"
      "\"3DTerrain\".\n\n"
      "A file that does not exist as named is looked up in the resource index. The\n"
      "loaders check the whole file before changing anything: FileNotFoundError for a\n"
      "missing file, OSError for one that can't be read, ValueError for bad content;\n"
      "the terrain then keeps its grid, heights and textures.",
      py::dynamic_attr(), twin_type_setup());
  def_node_init<Terrain, PyNode<Terrain>>(cls, "Vorn_3DTerrain",
                                          "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                                          "An empty terrain; CreateTerrain or LoadHeightFile builds the grid.");
  cls.def("CreateTerrain", &Terrain::CreateTerrain,
          "The default grid: CreatePlane(128, 128, 1.0, True), a flat 128 by 128 tiles with\n"
          "texture coordinates.")
      .def("LoadHeightFile", &Terrain::LoadHeightFile, py::arg("FileName"), py::arg("readflag") = "rb",
           py::arg("tilesize") = 1.0,
           "Replaces submesh 0 by the grid of a height file, with sloped normals and texture\n"
           "coordinates. With readflag 'rb' the file is binary (little-endian): int32 Cows,\n"
           "int32 Rows, then (Cows + 1) * (Rows + 1) float32 heights row by row. With any\n"
           "other flag it is text: fields separated by ',', Cows, Rows, then the heights.")
      .def("LoadBlendFile", &Terrain::LoadBlendFile, py::arg("FileName"), py::arg("readflag") = "rb",
           "Reads a 340-byte blend record: five 64-byte layer texture names (zero-padded;\n"
           "'.jpg' in a name is read as '.dds') and five float32 densities. Loads the blend\n"
           "map FileName + '_Blend1.tga' on channel 0 of submesh 0, the layers on channels 1\n"
           "to 5, and sets their densities. Only readflag 'rb' reads; another flag does nothing\n"
           "beyond finding the file.");
}

}  // namespace vorn::py_bind
