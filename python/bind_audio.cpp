// Music, sounds and fonts: Vorn_Sound, Vorn_Font and the resource manager's operations
// over them.
#include <memory>
#include <string>

#include "bind_common.h"
#include "resource/res_manager.h"

namespace vorn::py_bind {
namespace {

using Res = PyGameResManager;

// A colour as (r, g, b) or (r, g, b, a) of 0 to 255.
std::array<int, 4> colour_arg(py::handle value) {
  if (py::isinstance<py::str>(value) || !py::isinstance<py::sequence>(value) ||
      (py::len(value) != 3 && py::len(value) != 4)) {
    throw py::type_error("Vorn_Font.render: color must be (r, g, b) or (r, g, b, a)");
  }
  const auto seq = py::reinterpret_borrow<py::sequence>(value);
  std::array<int, 4> out{255, 255, 255, 255};
  for (std::size_t i = 0; i < py::len(value); ++i) out[i] = seq[i].cast<int>();
  return out;
}

void bind_sound(py::module_& m) {
  py::class_<Vorn_Sound, std::shared_ptr<Vorn_Sound>>(
      m, "Vorn_Sound",
      "A decoded sound (WAV, OGG and what SDL_mixer reads) that plays on a free mixer channel.\n"
      "Sounds that PlaySound starts stay in soundDict: they are kept, never removed.")
      .def(py::init<const std::string&>(), py::arg("fileName"),
           "Decodes a file (a path, not a name in the index); RuntimeError when it cannot.")
      .def("play", &Vorn_Sound::play, py::arg("loops") = 0,
           "Plays on a free channel; loops extra repeats, -1 forever. Nothing plays when every\n"
           "channel is busy.")
      .def("stop", &Vorn_Sound::stop, "Stops the sound if its channel still plays it.")
      .def("IsPlaying", &Vorn_Sound::IsPlaying, "Whether the sound is playing now.")
      .def("get_length", &Vorn_Sound::get_length, "Length in seconds.");
}

void bind_font(py::module_& m) {
  py::class_<Vorn_Font, std::shared_ptr<Vorn_Font>>(
      m, "Vorn_Font",
      "A TrueType font of one size, with bold and italic. render draws a string into a\n"
      "Vorn_Image (RGBA, rows from the top): save() it for Create2DImage, or hand\n"
      "transpose(FLIP_TOP_BOTTOM).tobytes() with \"RGBA\" to LoadSubMeshTextureFromImage.")
      .def(py::init<const std::string&, int>(), py::arg("fileName"), py::arg("fontSize"),
           "Opens a font file (a path). ValueError for fontSize <= 0, RuntimeError for a file\n"
           "that is missing or not a font.")
      .def_property_readonly("fontSize", &Vorn_Font::GetFontSize, "The size the font was opened at.")
      .def("set_bold", &Vorn_Font::set_bold, py::arg("bold"), "Turns bold on or off.")
      .def("set_italic", &Vorn_Font::set_italic, py::arg("italic"), "Turns italic on or off.")
      .def("get_bold", &Vorn_Font::get_bold, "Whether bold is on.")
      .def("get_italic", &Vorn_Font::get_italic, "Whether italic is on.")
      .def("get_height", &Vorn_Font::get_height, "Line height in pixels.")
      .def("size", &Vorn_Font::size, py::arg("text"), "(width, height) in pixels that render gives for text.")
      .def(
          "render",
          [](const Vorn_Font& f, const std::string& text, bool antialias, py::handle color, py::handle background) {
            const auto c = colour_arg(color);
            if (background.is_none()) return f.render(text, antialias, c[0], c[1], c[2], c[3]);
            const auto bg = colour_arg(background);
            return f.render_on(text, antialias, c[0], c[1], c[2], bg[0], bg[1], bg[2]);
          },
          py::arg("text"), py::arg("antialias") = true, py::arg("color") = py::make_tuple(255, 255, 255),
          py::arg("background") = py::none(),
          "text in color ((r, g, b) or (r, g, b, a), 0 to 255) as an RGBA Vorn_Image. Without a\n"
          "background the picture is transparent and antialiased edges carry coverage in alpha;\n"
          "with one ((r, g, b)) the text is laid over it and every pixel is opaque, which is\n"
          "what a picture drawn without blending (Create2DImage) needs.");
}

void bind_manager(py::module_& m) {
  auto cls = py::reinterpret_borrow<py::class_<Res, std::shared_ptr<Res>>>(m.attr("PyGameResManager"));
  cls.def("PlayMusic", &Res::PlayMusic, py::arg("fileName"), py::arg("loopcount") = 0,
          "Finds fileName in the resource index and plays it as the music: loopcount extra\n"
          "repeats (0 plays once), -1 forever. An unknown name does nothing; RuntimeError for a\n"
          "file that is not music. The mixer opens on first use (SDL's dummy driver when there\n"
          "is no sound card) and prints the driver's name.")
      .def("StopMusic", &Res::StopMusic, "Stops the music.")
      .def("IsMusicPlaying", [](const Res&) { return music::Playing(); }, "Whether music is playing now.")
      .def("PlaySound", &Res::PlaySound, py::arg("fileName"),
           "Finds fileName in the resource index, stores a new Vorn_Sound at\n"
           "soundDict[soundPlayCount], plays it and returns its id (soundPlayCount, which then\n"
           "grows by 1). -1 for an unknown name. RuntimeError, with nothing stored, for a file\n"
           "that is not a sound. Sounds are kept: soundDict never drops an entry.")
      .def("StopSound", &Res::StopSound, py::arg("soundID"),
           "Stops the sound of the id; an unknown id prints \"No Find Sound\". The entry stays.")
      .def("GetFont", &Res::GetFont, py::arg("ttfFile"), py::arg("fontSize"), py::arg("bold") = false,
           py::arg("italic") = false,
           "A new Vorn_Font of the file found by name, with bold and italic as asked; None for an\n"
           "unknown name. ValueError for fontSize <= 0, RuntimeError for a file that is not a\n"
           "font.")
      .def_property_readonly(
          "soundDict",
          [](const Res& r) {
            py::dict out;
            for (const auto& [id, sound] : r.soundDict) out[py::int_(id)] = sound;
            return out;
          },
          "Sound id to Vorn_Sound, as a new dict on each read; there from construction.");
  m.def("AudioDriver", &OpenAudio, "Opens the mixer if needed and returns its SDL driver's name.");
}

}  // namespace

void bind_audio(py::module_& m) {
  bind_sound(m);
  bind_font(m);
  bind_manager(m);
}

}  // namespace vorn::py_bind
