// Writes a few small valid files of each kind as starting corpora for the fuzz targets:
//   make_seeds <corpus root>   (folders tga/, dds/, image_codec/, obj/, glb/, height_file/,
//                               blend_file/ below it)
#include <turbojpeg.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../tests/cpp/glb_test_files.h"
#include "resource/image.h"
#include "resource/png_codec.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
namespace fs = std::filesystem;

void write(const fs::path& path, const Bytes& b) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
}

void u32(Bytes& b, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) b.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

Bytes tga(std::uint8_t depth, std::uint8_t descriptor, int w, int h) {
  Bytes b(18, 0);
  b[2] = 2;
  b[12] = static_cast<std::uint8_t>(w);
  b[14] = static_cast<std::uint8_t>(h);
  b[16] = depth;
  b[17] = descriptor;
  for (int i = 0; i < w * h * depth / 8; ++i) b.push_back(static_cast<std::uint8_t>(i * 37));
  return b;
}

Bytes dds(const char* fourCC, int w, int h, int mips, std::uint32_t caps2, int blocks, int block_bytes) {
  Bytes b = {'D', 'D', 'S', ' '};
  for (std::uint32_t v : {124u, 0x1007u, std::uint32_t(h), std::uint32_t(w), 0u, 0u, std::uint32_t(mips)}) u32(b, v);
  for (int i = 0; i < 11; ++i) u32(b, 0);
  u32(b, 32);
  u32(b, 4);
  for (int i = 0; i < 4; ++i) b.push_back(static_cast<std::uint8_t>(fourCC[i]));
  for (int i = 0; i < 5; ++i) u32(b, 0);
  u32(b, 0x1000);
  u32(b, caps2);
  for (int i = 0; i < 3; ++i) u32(b, 0);
  for (int i = 0; i < blocks * block_bytes; ++i) b.push_back(static_cast<std::uint8_t>(i * 91 + 7));
  return b;
}

Bytes jpeg(const vorn::Image& im, int subsamp, int flags) {
  tjhandle tj = tjInitCompress();
  unsigned char* out = nullptr;
  unsigned long size = 0;
  const int pf = im.mode() == vorn::Image::Mode::L ? TJPF_GRAY : TJPF_RGB;
  tjCompress2(tj, im.data().data(), im.width(), 0, im.height(), pf, &out, &size, subsamp, 80, flags);
  Bytes b(out, out + size);
  tjFree(out);
  tjDestroy(tj);
  return b;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const fs::path root = argv[1];
  for (const char* sub : {"tga", "dds", "image_codec", "obj", "glb", "height_file", "blend_file"}) {
    fs::create_directories(root / sub);
  }

  // OBJ text, a NUL, then the MTL text its "mtllib" line reads.
  const auto text = [](const std::string& t) { return Bytes(t.begin(), t.end()); };
  write(root / "obj" / "textured",
        text(std::string("mtllib m.mtl\nusemtl a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 0 1\nvn 0 0 1\nvn 0 0 1\n"
                         "vt 0 0\nvt 1 0\nvt 0 1\nf 0/0/0 1/1/1 2/2/2\nf -1/-1/-1 -2//-2 -3/-3\n") +
             '\0' + "newmtl a\nKd 1 0.5 0\nmap_Kd a.png\nillum 2\n"));
  write(root / "obj" / "two_groups",
        text("# two groups\nusemtl a\nv 1e3 -2.5 +3\nvt 0.5 0.5 0\nvn 0 1 0\nf 0 0 0 0\r\n"
             "usemat b\r\nv inf nan 1_0\nvt 0 0\nvn 1 0 0\nf 0//0 0 0\nusemtl a\n"));

  // Height files: a binary 2 by 1 grid, and the text forms of a grid.
  Bytes height;
  u32(height, 2);
  u32(height, 1);
  for (int i = 0; i < 6; ++i) u32(height, 0x3F800000u + static_cast<std::uint32_t>(i) * 0x100000u);
  write(root / "height_file" / "binary_2x1", height);
  write(root / "height_file" / "text_1x1", text("1,1,0.5,-2e1, 1_0 ,inf\n"));
  write(root / "height_file" / "text_2x1", text("2,1,0,1,2,3,4,5,nan"));
  // A blend record: names padded to 64 bytes, one of them ".jpg", then five densities.
  Bytes blend;
  for (const std::string& name : std::vector<std::string>{"mask.tga", "grass.jpg", "rock.dds", "", std::string(64, 's')}) {
    Bytes field(64, 0);
    std::copy(name.begin(), name.end(), field.begin());
    blend.insert(blend.end(), field.begin(), field.end());
  }
  for (int i = 0; i < 5; ++i) u32(blend, 0x3F800000u + static_cast<std::uint32_t>(i) * 0x800000u);
  write(root / "blend_file" / "record", blend);

  write(root / "tga" / "rgb24", tga(24, 0, 4, 3));
  write(root / "tga" / "rgba32", tga(32, 8, 3, 4));
  write(root / "tga" / "grey8", tga(8, 0x20, 5, 2));

  write(root / "dds" / "bc1", dds("DXT1", 8, 8, 1, 0, 4, 8));
  write(root / "dds" / "bc2_mips", dds("DXT3", 4, 4, 3, 0, 3, 16));
  write(root / "dds" / "bc3", dds("DXT5", 8, 4, 1, 0, 2, 16));
  write(root / "dds" / "cube", dds("DXT1", 4, 4, 1, 0xFE00, 6, 8));
  write(root / "dds" / "dx10", dds("DX10", 4, 4, 1, 0, 2, 16));

  vorn::Image rgba(vorn::Image::Mode::RGBA, 7, 5);
  vorn::Image rgb(vorn::Image::Mode::RGB, 9, 9);
  vorn::Image grey(vorn::Image::Mode::L, 6, 3);
  for (vorn::Image* im : {&rgba, &rgb, &grey}) {
    for (std::size_t i = 0; i < im->data().size(); ++i) im->data()[i] = static_cast<std::uint8_t>(i * 13);
  }
  // The reader tests' triangle, plain and skinned, and the plain one with a material image.
  write(root / "glb" / "triangle", vorn::test::Triangle(false).file());
  write(root / "glb" / "skinned", vorn::test::Triangle(true).file());
  vorn::test::Doc textured = vorn::test::Triangle(false);
  const Bytes png = vorn::EncodePNG(rgb);
  // Image offsets count from the BIN chunk header, 8 bytes before the data.
  const std::size_t at = textured.bin.U8(png);
  textured.json["bufferViews"].push_back({{"byteOffset", at}, {"byteLength", png.size() + 8}});
  textured.json["images"] = vorn::GlbJson::array({{{"bufferView", textured.json["bufferViews"].size() - 1}}});
  textured.json["samplers"] = vorn::GlbJson::array({{{"magFilter", 9729}, {"wrapS", 10497}}});
  textured.json["textures"] = vorn::GlbJson::array({{{"source", 0}, {"sampler", 0}}});
  textured.json["materials"] = vorn::GlbJson::array(
      {{{"extensions", {{"KHR_materials_pbrSpecularGlossiness", {{"diffuseTexture", {{"index", 0}}}}}}}}});
  textured.json["meshes"][0]["primitives"][0]["material"] = 0;
  write(root / "glb" / "textured", textured.file());

  write(root / "image_codec" / "rgba.png", vorn::EncodePNG(rgba));
  write(root / "image_codec" / "rgb.png", vorn::EncodePNG(rgb));
  write(root / "image_codec" / "grey.png", vorn::EncodePNG(grey));
  write(root / "image_codec" / "rgb420.jpg", jpeg(rgb, TJSAMP_420, 0));
  write(root / "image_codec" / "rgb444_progressive.jpg", jpeg(rgb, TJSAMP_444, TJFLAG_PROGRESSIVE));
  write(root / "image_codec" / "grey.jpg", jpeg(grey, TJSAMP_GRAY, 0));
  return 0;
}
