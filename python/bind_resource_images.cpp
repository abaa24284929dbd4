// Images in main memory, the image file readers and the DDS format tables.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "bind_common.h"
#include "resource/dds_formats.h"
#include "resource/dds_reader.h"
#include "resource/image.h"
#include "resource/image_file_loader.h"
#include "resource/tga_reader.h"

namespace vorn::py_bind {
namespace {

// One channel value: an int (or a float, truncated), clipped to 0..255.
std::uint8_t channel_arg(py::handle value, const char* where) {
  const double v = number_arg(value, where, "a pixel channel");
  if (std::isnan(v)) throw py::value_error(std::string(where) + ": a pixel channel must not be NaN");
  return static_cast<std::uint8_t>(std::clamp(std::trunc(v), 0.0, 255.0));
}

// A pixel value: one number (grey) or a sequence of 3 or 4 numbers.
Image::Pixel pixel_arg(py::handle value, const char* where) {
  Image::Pixel px;
  if (PyNumber_Check(value.ptr()) && !PySequence_Check(value.ptr())) {
    px.c[0] = px.c[1] = px.c[2] = channel_arg(value, where);
    px.c[3] = 255;
    px.count = 1;
    return px;
  }
  if (!PySequence_Check(value.ptr()) || PyUnicode_Check(value.ptr())) {
    throw py::type_error(std::string(where) + ": a pixel must be a number or a sequence of 3 or 4 numbers");
  }
  py::sequence seq = py::reinterpret_borrow<py::sequence>(value);
  const std::size_t n = seq.size();
  if (n != 3 && n != 4) {
    throw py::type_error(std::string(where) + ": a pixel must be a number or a sequence of 3 or 4 numbers");
  }
  for (std::size_t i = 0; i < n; ++i) px.c[i] = channel_arg(seq[i], where);
  px.count = static_cast<int>(n);
  return px;
}

// An (x, y) pair of integers.
std::pair<std::int64_t, std::int64_t> xy_arg(py::handle value, const char* where) {
  const std::string bad = std::string(where) + ": xy must be a pair of integers (x, y)";
  if (!PySequence_Check(value.ptr()) || PyUnicode_Check(value.ptr()) || py::len(value) != 2) {
    throw py::type_error(bad);
  }
  py::sequence seq = py::reinterpret_borrow<py::sequence>(value);
  py::object x = seq[0], y = seq[1];
  if (!PyLong_Check(x.ptr()) || !PyLong_Check(y.ptr())) throw py::type_error(bad);
  return {x.cast<std::int64_t>(), y.cast<std::int64_t>()};
}

py::object pixel_to_py(const Image::Pixel& px) {
  if (px.count == 1) return py::int_(px.c[0]);
  py::tuple out(px.count);
  for (int i = 0; i < px.count; ++i) out[static_cast<std::size_t>(i)] = py::int_(px.c[static_cast<std::size_t>(i)]);
  return out;
}

// (image, width, height, flag), or the three fields of the DDS mip refusal.
}  // namespace

py::tuple load_result_to_py(const ImageLoadResult& r) {
  py::object image = r.image ? py::cast(r.image) : py::none();
  if (!r.has_flag) return py::make_tuple(image, r.width, r.height);
  return py::make_tuple(image, r.width, r.height, r.flag);
}

namespace {

py::bytes to_py_bytes(const std::vector<std::uint8_t>& data) {
  return py::bytes(reinterpret_cast<const char*>(data.data()), data.size());
}

template <class Table, class Cls>
void add_constants(Cls& cls) {
  for (const auto& [name, value] : Table::Constants()) cls.attr(name) = py::int_(value);
}

void bind_image(py::module_& m) {
  py::class_<Image, std::shared_ptr<Image>> cls(
      m, "Vorn_Image",
      "A decoded picture in main memory: size, mode (\"L\", \"RGB\" or \"RGBA\") and 8-bit\n"
      "samples in rows from the top. The image readers return it; texture upload takes\n"
      "tobytes_bottom_up().");
  cls.def(py::init([](const std::string& mode, py::handle size, py::handle color) {
            const auto [w, h] = xy_arg(size, "Vorn_Image");
            if (color.is_none()) return std::make_shared<Image>(mode, w, h);
            return std::make_shared<Image>(mode, w, h, pixel_arg(color, "Vorn_Image"));
          }),
          py::arg("mode"), py::arg("size"), py::arg("color") = py::none(),
          "Vorn_Image(mode, size, color=None): a new image of mode \"L\", \"RGB\" or \"RGBA\"\n"
          "and size (width, height), filled with color: a number (grey, opaque), a 3- or\n"
          "4-tuple, or None for black (transparent for \"RGBA\").")
      .def_property_readonly(
          "size", [](const Image& im) { return py::make_tuple(im.width(), im.height()); }, "(width, height).")
      .def_property_readonly("width", &Image::width, "Width in pixels.")
      .def_property_readonly("height", &Image::height, "Height in pixels.")
      .def_property_readonly("mode", &Image::mode_name, "\"L\", \"RGB\" or \"RGBA\".")
      .def(
          "getpixel",
          [](const Image& im, py::handle xy) {
            const auto [x, y] = xy_arg(xy, "Vorn_Image.getpixel");
            return pixel_to_py(im.getpixel(x, y));
          },
          py::arg("xy"),
          "The pixel at (x, y): an int for \"L\", a tuple otherwise. Negative coordinates\n"
          "count from the far edge; IndexError outside the image.")
      .def(
          "putpixel",
          [](Image& im, py::handle xy, py::handle value) {
            const auto [x, y] = xy_arg(xy, "Vorn_Image.putpixel");
            im.putpixel(x, y, pixel_arg(value, "Vorn_Image.putpixel"));
          },
          py::arg("xy"), py::arg("value"),
          "Writes the pixel at (x, y). A 3-tuple on \"RGBA\" sets alpha 255; channels are\n"
          "clipped to 0..255. IndexError outside the image.")
      .def(
          "transpose",
          [](const Image& im, int method) {
            if (method != Image::FLIP_LEFT_RIGHT && method != Image::FLIP_TOP_BOTTOM) {
              throw py::value_error("Vorn_Image.transpose: method must be FLIP_LEFT_RIGHT or FLIP_TOP_BOTTOM");
            }
            return im.transpose(static_cast<Image::Transpose>(method));
          },
          py::arg("method"), "A new image mirrored: FLIP_LEFT_RIGHT or FLIP_TOP_BOTTOM.")
      .def(
          "convert", [](const Image& im, const std::string& mode) { return im.convert(Image::ModeFromName(mode)); },
          py::arg("mode"), "A copy in mode \"L\", \"RGB\" or \"RGBA\".")
      .def(
          "tobytes", [](const Image& im) { return to_py_bytes(im.tobytes()); },
          "The samples as bytes, rows from the top.")
      .def(
          "tobytes_bottom_up", [](const Image& im) { return to_py_bytes(im.bytes_bottom_up()); },
          "The samples as bytes, rows from the bottom up, as OpenGL reads them.")
      .def("save", &Image::save, py::arg("fp"),
           "Writes a PNG file; ValueError for a name that doesn't end in \".png\".")
      .def("__repr__", [](const Image& im) {
        return "<Vorn_Image mode=" + std::string(im.mode_name()) + " size=" + std::to_string(im.width()) + "x" +
               std::to_string(im.height()) + ">";
      });
  cls.attr("FLIP_LEFT_RIGHT") = py::int_(static_cast<int>(Image::FLIP_LEFT_RIGHT));
  cls.attr("FLIP_TOP_BOTTOM") = py::int_(static_cast<int>(Image::FLIP_TOP_BOTTOM));
}

void bind_format_tables(py::module_& m) {
  py::class_<Vorn_DXGI_FORMAT> dxgi(
      m, "Vorn_DXGI_FORMAT",
      "DDS texture format numbers (DXGI_FORMAT_*), the pixel-format flags DDS_FOURCC,\n"
      "DDS_RGB, DDS_LUMINANCE, DDS_ALPHA, and the format helpers.");
  add_constants<Vorn_DXGI_FORMAT>(dxgi);
  dxgi.def_static("CheckBitMask", &Vorn_DXGI_FORMAT::CheckBitMask, py::arg("RBitMask"), py::arg("r"),
                  py::arg("GBitMask"), py::arg("g"), py::arg("BBitMask"), py::arg("b"), py::arg("ABitMask"),
                  py::arg("a"), "True when each of the four masks equals its value.")
      .def_static("GetDXGIFormat", &Vorn_DXGI_FORMAT::GetDXGIFormat, py::arg("flags"), py::arg("RGBBitCount"),
                  py::arg("RBitMask"), py::arg("GBGitMask"), py::arg("BBitMask"), py::arg("ABitMask"),
                  py::arg("fourCC"),
                  "The format number of a legacy DDS pixel format; DXGI_FORMAT_UNKNOWN when none fits.")
      .def_static("BitsPerPixel", &Vorn_DXGI_FORMAT::BitsPerPixel, py::arg("fmt"),
                  "Bits per pixel of a format; 0 for an unknown one.")
      .def_static(
          "GetSurfaceInfo",
          [](std::int64_t width, std::int64_t height, std::int64_t fmt) {
            const auto info = Vorn_DXGI_FORMAT::GetSurfaceInfo(width, height, fmt);
            return py::make_tuple(info.numBytes, info.rowBytes, info.numRows);
          },
          py::arg("width"), py::arg("height"), py::arg("fmt"),
          "(numBytes, rowBytes, numRows) of one surface of the format.");

  py::class_<Vorn_DX11_RESOURCE_DIMENSION> dx11(m, "Vorn_DX11_RESOURCE_DIMENSION",
                                                "Resource dimensions D3D11_RESOURCE_DIMENSION_*.");
  add_constants<Vorn_DX11_RESOURCE_DIMENSION>(dx11);
  py::class_<Vorn_DX12_RESOURCE_DIMENSION> dx12(m, "Vorn_DX12_RESOURCE_DIMENSION",
                                                "Resource dimensions D3D12_RESOURCE_DIMENSION_*.");
  add_constants<Vorn_DX12_RESOURCE_DIMENSION>(dx12);
  py::class_<Vorn_DDS_CUBE> cube(m, "Vorn_DDS_CUBE", "Cube map face flags DDS_CUBEMAP_* of a DDS header.");
  add_constants<Vorn_DDS_CUBE>(cube);
}

void bind_readers(py::module_& m) {
  // The resource manager's LoadTGA, LoadDDS and LoadImageFile resolve names through its
  // index; these path-level forms serve tests and tools until then.
  m.def(
      "_LoadTGA", [](const std::string& fileName) { return load_result_to_py(LoadTGA(fileName)); },
      py::arg("fileName"),
      "Reads a TGA file: (image, width, height, True), or (None, 0, 0, False) when it can't.");
  m.def(
      "_LoadDDS", [](const std::string& fileName) { return load_result_to_py(LoadDDS(fileName)); },
      py::arg("fileName"),
      "Reads a DDS file with BC1, BC2 or BC3 data: (image, width, height, IsRGBA);\n"
      "(None, 0, 0, False) when it can't, (None, 0, 0) for more than 15 mip levels.");
  m.def(
      "_LoadImageFile",
      [](const std::string& fileName, std::optional<std::string> dirName) {
        return load_result_to_py(LoadImageFile(fileName, dirName));
      },
      py::arg("fileName"), py::arg("dirName") = py::none(),
      "Reads a .png, .jpg, .tga or .dds file: (image, width, height, flag), or\n"
      "(None, 0, 0, False) for any other extension or a file that can't be read.");
}

}  // namespace

void bind_resource_images(py::module_& m) {
  bind_image(m);
  bind_format_tables(m);
  bind_readers(m);
}

}  // namespace vorn::py_bind
