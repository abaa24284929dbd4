// Particles: Vorn_Particle, Vorn_3DParticleEmitter with its live ParticleArray, and the
// scene's CreateParticleEmitter factory. Bound after the scene.
#include <array>
#include <memory>
#include <string>

#include "bind_node.h"
#include "list_view.h"
#include "node_trampoline.h"
#include "node_views.h"
#include "overlay/particle.h"
#include "scene/scene.h"

namespace vorn::py_bind {
namespace {

using Particle = Vorn_Particle;
using Emitter = Vorn_3DParticleEmitter;
using Scene = Vorn_3Dcene;
using Range = Emitter::Range;
using EmitterClass = py::class_<Emitter, Vorn_3DGameNode, PyNode<Emitter>, std::shared_ptr<Emitter>>;
using SceneClass = py::class_<Scene, NodeScene, std::shared_ptr<Scene>>;

struct ParticleConv {
  static constexpr const char* items = "Vorn_Particle objects";
  static py::object to_py(const std::shared_ptr<Particle>& p) { return py::cast(p); }
  static std::shared_ptr<Particle> from_py(py::handle value, const std::string& where) {
    if (!value.is_none() && py::isinstance<Particle>(value)) return value.cast<std::shared_ptr<Particle>>();
    throw py::type_error(where + ": expected a Vorn_Particle, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
};
using ParticleListView = ListView<ParticleList, ParticleConv>;

// N numbers from a script sequence, TypeError otherwise.
template <std::size_t N>
std::array<double, N> numbers(py::handle value, const std::string& where) {
  if (py::isinstance<py::str>(value) || !py::isinstance<py::sequence>(value) || py::len(value) != N) {
    throw py::type_error(where + " must be a sequence of " + std::to_string(N) + " numbers");
  }
  std::array<double, N> out{};
  const auto seq = py::reinterpret_borrow<py::sequence>(value);
  for (std::size_t i = 0; i < N; ++i) out[i] = number_arg(seq[i], where.c_str(), "each value");
  return out;
}

Range range_arg(py::handle value, const std::string& where) {
  const auto v = numbers<2>(value, where);
  return {v[0], v[1]};
}

template <std::size_t N>
py::list ranges_to_py(const std::array<Range, N>& r) {
  py::list out;
  for (const Range& x : r) out.append(py::make_tuple(x.first, x.second));
  return out;
}

template <std::size_t N>
std::array<Range, N> ranges_arg(py::handle value, const std::string& where) {
  if (py::isinstance<py::str>(value) || !py::isinstance<py::sequence>(value) || py::len(value) != N) {
    throw py::type_error(where + " must be a sequence of " + std::to_string(N) + " (min, max) pairs");
  }
  std::array<Range, N> out{};
  const auto seq = py::reinterpret_borrow<py::sequence>(value);
  for (std::size_t i = 0; i < N; ++i) out[i] = range_arg(seq[i], where);
  return out;
}

template <std::size_t N>
py::list list_of(const std::array<double, N>& a) {
  py::list out;
  for (double v : a) out.append(v);
  return out;
}

// A rolled field of a particle: None until it has a value.
template <class V, V Particle::*Field, Particle::Field Bit>
void vector_field(py::class_<Particle, std::shared_ptr<Particle>>& cls, const char* name, const char* doc) {
  const std::string where = std::string("Vorn_Particle.") + name;
  cls.def_property(
      name, [](const Particle& p) -> py::object { return p.Set & Bit ? py::object(list_of(p.*Field)) : py::none(); },
      [where](Particle& p, py::handle value) {
        if (value.is_none()) {
          p.Set = static_cast<std::uint8_t>(p.Set & ~Bit);
          return;
        }
        p.*Field = numbers<std::tuple_size_v<V>>(value, where);
        p.Set |= Bit;
      },
      doc);
}

template <double Particle::*Field, Particle::Field Bit>
void number_field(py::class_<Particle, std::shared_ptr<Particle>>& cls, const char* name, const char* doc) {
  const std::string where = std::string("Vorn_Particle.") + name;
  cls.def_property(
      name, [](const Particle& p) -> py::object { return p.Set & Bit ? py::object(py::float_(p.*Field)) : py::none(); },
      [where](Particle& p, py::handle value) {
        if (value.is_none()) {
          p.Set = static_cast<std::uint8_t>(p.Set & ~Bit);
          return;
        }
        p.*Field = number_arg(value, where.c_str(), "the value");
        p.Set |= Bit;
      },
      doc);
}

std::shared_ptr<Emitter> emitter_arg(py::handle value, const char* where) {
  if (value.is_none()) return nullptr;
  if (!py::isinstance<Emitter>(value)) {
    throw py::type_error(std::string(where) + ": emitter must be a Vorn_3DParticleEmitter or None");
  }
  return value.cast<std::shared_ptr<Emitter>>();
}

void bind_particle(py::module_& m) {
  py::class_<Particle, std::shared_ptr<Particle>> cls(
      m, "Vorn_Particle",
      "One particle of an emitter: position, velocity and acceleration per second, colour and\n"
      "its change per second, a size (stepped, not drawn) and a life that counts down. The\n"
      "emitter is a non-owning reference: it reads None once the emitter is gone.",
      py::dynamic_attr(), twin_type_setup());
  cls.def(py::init([](py::handle emitter, double life) {
            return std::make_shared<Particle>(emitter_arg(emitter, "Vorn_Particle"), life);
          }),
          py::arg("emitter"), py::arg("life") = 100);
  attach_twin_after_init(cls,
                         "__init__(self, emitter, life=100)\n\n"
                         "With an emitter, pos, speed, acspeed, color, colorSpeed, size and sizeSpeed are\n"
                         "rolled from its ranges (GetNewParticleXYZ and the like); without one they are None.");
  vector_field<Particle::Vec3, &Particle::pos, Particle::kPos>(cls, "pos", "[x, y, z] in world units, or None.");
  vector_field<Particle::Vec3, &Particle::speed, Particle::kSpeed>(cls, "speed", "Velocity per second, or None.");
  vector_field<Particle::Vec3, &Particle::acspeed, Particle::kAcSpeed>(cls, "acspeed",
                                                                       "Acceleration per second, or None.");
  vector_field<Particle::Vec4, &Particle::color, Particle::kColor>(cls, "color", "[r, g, b, a], or None.");
  vector_field<Particle::Vec4, &Particle::colorSpeed, Particle::kColorSpeed>(
      cls, "colorSpeed", "Colour change per second, or None.");
  number_field<&Particle::size, Particle::kSize>(cls, "size", "Size; stepped but not used in drawing.");
  number_field<&Particle::sizeSpeed, Particle::kSizeSpeed>(cls, "sizeSpeed", "Size change per second, or None.");
  cls.def_readwrite("life", &Particle::life, "Life left; the particle is dead at 0 or below.")
      .def_property(
          "emitter", [](const Particle& p) { return node_to_py(p.GetEmitter()); },
          [](Particle& p, py::handle value) { p.SetEmitter(emitter_arg(value, "Vorn_Particle.emitter")); },
          "The emitter (non-owning), or None.")
      .def("SetPosition", &Particle::SetPosition, py::arg("x"), py::arg("y"), py::arg("z"), "Sets pos.")
      .def(
          "GetPosition",
          [](const Particle& p) -> py::object { return p.Set & Particle::kPos ? py::object(list_of(p.pos)) : py::none(); },
          "pos as [x, y, z], or None.")
      .def("SetColor", &Particle::SetColor, py::arg("r") = 1.0, py::arg("g") = 1.0, py::arg("b") = 1.0,
           py::arg("a") = 1.0, "Sets color.")
      .def(
          "GetColor",
          [](const Particle& p) -> py::object {
            return p.Set & Particle::kColor ? py::object(list_of(p.color)) : py::none();
          },
          "color as [r, g, b, a], or None.")
      .def("SetSize", &Particle::SetSize, py::arg("size"), "Sets size.")
      .def(
          "GetSize",
          [](const Particle& p) -> py::object {
            return p.Set & Particle::kSize ? py::object(py::float_(p.size)) : py::none();
          },
          "size, or None.")
      .def("IsDead", &Particle::IsDead, "True when life <= 0.")
      .def("update", &Particle::update, py::arg("delay"),
           "With life above 0 and an emitter: life -= emitter.EmitterLifeDecSpeed * delay, then\n"
           "speed += acspeed * delay, pos += speed * delay (the new speed), color += colorSpeed *\n"
           "delay clamped to [0, 1], size += sizeSpeed * delay. TypeError when a field is None.")
      .def("draw", &Particle::draw,
           "glColor3f of the colour and glVertex3f of pos when alive; call between glBegin and\n"
           "glEnd. Alpha is not drawn.");
}

template <std::size_t N, std::array<Range, N> Emitter::*Field>
void ranges_field(EmitterClass& cls, const char* name, const char* doc) {
  const std::string where = std::string("Vorn_3DParticleEmitter.") + name;
  cls.def_property(
      name, [](const Emitter& e) { return ranges_to_py(e.*Field); },
      [where](Emitter& e, py::handle value) { e.*Field = ranges_arg<N>(value, where); }, doc);
}

template <Range Emitter::*Field>
void range_field(EmitterClass& cls, const char* name, const char* doc) {
  const std::string where = std::string("Vorn_3DParticleEmitter.") + name;
  cls.def_property(
      name, [](const Emitter& e) { return py::make_tuple((e.*Field).first, (e.*Field).second); },
      [where](Emitter& e, py::handle value) { e.*Field = range_arg(value, where); }, doc);
}

void bind_emitter(py::module_& m) {
  bind_list_view<ParticleList, ParticleConv>(m, "ParticleList",
                                             "The live particles of an emitter: a list whose changes reach the engine.");
  EmitterClass cls(m, "Vorn_3DParticleEmitter",
                   "A node that keeps a pool of Vorn_Particle records and draws them as textured point\n"
                   "sprites of 20 pixels, coloured by glColor3f, in one GL_POINTS primitive. Random values\n"
                   "come from the engine's generator (SeedRandom repeats a run). NodeType\n"
                   "\"3DParticleEmitter\".",
                   py::dynamic_attr(), twin_type_setup());
  def_node_init<Emitter, PyNode<Emitter>>(cls, "Vorn_3DParticleEmitter",
                                          "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                                          "An emitter of 500 particles with the default ranges.");
  cls.def("CreateParticleEmitter", &Emitter::CreateParticleEmitter, py::arg("particleTotal") = 200,
          py::arg("particleMode") = "Gravity", "Sets ParticleTotal and ParticleMode.")
      .def("LoadTextureFromFile", &Emitter::LoadTextureFromFile, py::arg("fileName"),
           "Finds the file as given, else in the resource index (several matches print\n"
           "\"<name> has <n> same image.\" and the first is taken), else beside MeshFile; makes\n"
           "TextureID from it as RGBA, linear and repeating, outside the image cache. A\n"
           "previous TextureID is deleted. Prints \"Can't find texture: <name>\" or \"Can't read\n"
           "texture: <path>\" and changes nothing when that fails. Needs a GL context.")
      .def_static("RandomAB", &Emitter::RandomAB, py::arg("a"), py::arg("b"), "a + (b - a) * random in [0, 1).")
      .def("SetEmitterArea", &Emitter::SetEmitterArea, py::arg("minX") = 0.0, py::arg("maxX") = 0.0,
           py::arg("minY") = 0.0, py::arg("maxY") = 0.0, py::arg("minZ") = 0.0, py::arg("maxZ") = 0.0,
           "Sets the x, y, z offset ranges of new particles.")
      .def("SetEmitterSize", &Emitter::SetEmitterSize, py::arg("minSize") = 0.0, py::arg("maxSize") = 1.0,
           "Sets EmitterSize.")
      .def("SetEmitterSizeSpeed", &Emitter::SetEmitterSizeSpeed, py::arg("minSpeed") = 0.0,
           py::arg("maxSpeed") = 0.0, "Sets EmitterSizeSpeed.")
      .def("SetEmitterDirSpeed", &Emitter::SetEmitterDirSpeed, py::arg("minDirX") = 0.0, py::arg("maxDirX") = 0.0,
           py::arg("minDirY") = 0.0, py::arg("maxDirY") = 0.0, py::arg("minDirZ") = 0.0, py::arg("maxDirZ") = 0.0,
           "Sets the velocity ranges.")
      .def("SetEmitterAccSpeed_X", &Emitter::SetEmitterAccSpeed_X, py::arg("mindirX") = 0.0,
           py::arg("maxdirX") = 0.0, "Sets the x acceleration range.")
      .def("SetEmitterAccSpeed_Y", &Emitter::SetEmitterAccSpeed_Y, py::arg("mindirY") = 0.0,
           py::arg("maxdirY") = 0.0, "Sets the y acceleration range.")
      .def("SetEmitterAccSpeed_Z", &Emitter::SetEmitterAccSpeed_Z, py::arg("mindirZ") = 0.0,
           py::arg("maxdirZ") = 0.0, "Sets the z acceleration range.")
      .def("SetEmitterColor", &Emitter::SetEmitterColor, py::arg("minRed") = 0.0, py::arg("maxRed") = 1.0,
           py::arg("minGreen") = 0.0, py::arg("maxGreen") = 1.0, py::arg("minBlue") = 0.0, py::arg("maxBlue") = 1.0,
           py::arg("minAlpha") = 0.0, py::arg("maxAlpha") = 1.0, "Sets the r, g, b, a ranges.")
      .def("SetEmitterColorSpeed", &Emitter::SetEmitterColorSpeed, py::arg("minRed") = -0.1, py::arg("maxRed") = 0.0,
           py::arg("minGreen") = -0.1, py::arg("maxGreen") = 1.0, py::arg("minBlue") = -0.1,
           py::arg("maxBlue") = 1.0, py::arg("minAlpha") = -0.1, py::arg("maxAlpha") = 1.0,
           "Sets the colour speed ranges; the defaults are red (-0.1, 0.0), the others (-0.1, 1.0).")
      .def("SetEmitterColorSpeed_R", &Emitter::SetEmitterColorSpeed_R, py::arg("minRed") = -0.1,
           py::arg("maxRed") = 0.0, "Sets the red speed range.")
      .def("SetEmitterColorSpeed_G", &Emitter::SetEmitterColorSpeed_G, py::arg("minGreen") = -0.1,
           py::arg("maxGreen") = 0.0, "Sets the green speed range.")
      .def("SetEmitterColorSpeed_B", &Emitter::SetEmitterColorSpeed_B, py::arg("minBlue") = -0.1,
           py::arg("maxBlue") = 0.0, "Sets the blue speed range.")
      .def("SetEmitterColorSpeed_A", &Emitter::SetEmitterColorSpeed_A, py::arg("minAlpha") = -0.1,
           py::arg("maxAlpha") = 0.0, "Sets the alpha speed range.")
      .def(
          "GetNewParticleXYZ", [](const Emitter& e) { return list_of(e.GetNewParticleXYZ()); },
          "The node's x, y, z each plus RandomAB of its EmitterArea range.")
      .def("GetNewParticleSize", &Emitter::GetNewParticleSize, "RandomAB of EmitterSize.")
      .def("GetNewParticleSizeSpeed", &Emitter::GetNewParticleSizeSpeed, "RandomAB of EmitterSizeSpeed.")
      .def(
          "GetNewParticleDirSpeed", [](const Emitter& e) { return list_of(e.GetNewParticleDirSpeed()); },
          "Three RandomAB values of EmitterDirSpeed.")
      .def(
          "GetNewParticleAccSpeed", [](const Emitter& e) { return list_of(e.GetNewParticleAccSpeed()); },
          "Three RandomAB values of EmitterAccSpeed.")
      .def(
          "GetNewParticleColor", [](const Emitter& e) { return list_of(e.GetNewParticleColor()); },
          "Four RandomAB values of EmitterColor.")
      .def(
          "GetNewParticleColorSpeed", [](const Emitter& e) { return list_of(e.GetNewParticleColorSpeed()); },
          "Four RandomAB values of EmitterColorSpeed.")
      .def("AddParticle", &Emitter::AddParticle, "Appends Vorn_Particle(self, 100 * random) to ParticleArray.")
      .def("update", &Emitter::update, py::arg("delay"),
           "Steps every particle and removes dead ones by index as it walks (the particle after a\n"
           "removal is skipped this frame); ParticleCount counts the live ones found. Below\n"
           "ParticleTotal, delay gathers in EmitterTime until int(EmitterTime * EmissionRate)\n"
           "is at least 1; that many particles (up to the room left) are added and EmitterTime\n"
           "goes back to 0. The base update does not run: actions and children stay still.")
      .def("draw_allsubmesh", &Emitter::draw_allsubmesh,
           "The particles as 20-pixel point sprites with TextureID (untextured without one),\n"
           "alpha-blended, in one GL_POINTS primitive.")
      .def_readwrite("ParticleMode", &Emitter::ParticleMode, "Mode name; stored only (\"Gravity\").")
      .def_readwrite("ParticleTotal", &Emitter::ParticleTotal, "Pool limit (500; 200 from the factory).")
      .def_readwrite("ParticleCount", &Emitter::ParticleCount, "Live particles found by the last update.")
      .def_property(
          "ParticleArray", [](const std::shared_ptr<Emitter>& e) { return ParticleListView{e, &e->ParticleArray}; },
          [](Emitter& e, py::handle value) {
            assign_list<ParticleList, ParticleConv>(e.ParticleArray, value, "Vorn_3DParticleEmitter.ParticleArray");
          },
          "The live particles, a list whose changes reach the engine.")
      .def_readwrite("EmissionRate", &Emitter::EmissionRate, "Particles per second (100).")
      .def_readwrite("EmitterLifeDecSpeed", &Emitter::EmitterLifeDecSpeed, "Life lost per second (10.0).")
      .def_readwrite("EmitterTime", &Emitter::EmitterTime, "Time gathered towards the next emission.")
      .def_readwrite("TextureID", &Emitter::TextureID, "The sprite's OpenGL texture name, or None.");
  range_field<&Emitter::EmitterSize>(cls, "EmitterSize", "(min, max) size, (1.0, 2.0).");
  range_field<&Emitter::EmitterSizeSpeed>(cls, "EmitterSizeSpeed", "(min, max) size speed, (0.0, 1.0).");
  ranges_field<3, &Emitter::EmitterArea>(cls, "EmitterArea", "x, y, z offset ranges, all (0.0, 0.0).");
  ranges_field<3, &Emitter::EmitterDirSpeed>(cls, "EmitterDirSpeed",
                                             "Velocity ranges, [(-0.5, 0.5), (1.0, 1.0), (-0.5, 0.5)].");
  ranges_field<3, &Emitter::EmitterAccSpeed>(cls, "EmitterAccSpeed",
                                             "Acceleration ranges, [(0.0, 0.0), (0.0, -2.0), (0.0, 0.0)].");
  ranges_field<4, &Emitter::EmitterColor>(cls, "EmitterColor", "r, g, b, a ranges, four of (0.0, 1.0).");
  ranges_field<4, &Emitter::EmitterColorSpeed>(cls, "EmitterColorSpeed",
                                               "r, g, b, a speed ranges, four of (0.1, 0.1).");
}

void bind_factory(py::module_& m) {
  auto cls = py::reinterpret_borrow<SceneClass>(m.attr("Vorn_3Dcene"));
  cls.def(
      "CreateParticleEmitter",
      [](Scene& s, double x, double y, double z, py::handle parent) {
        return node_to_py(s.CreateParticleEmitter(
            x, y, z, parent.is_none() ? nullptr : node_arg(parent, "Vorn_3Dcene.CreateParticleEmitter")));
      },
      py::arg("x") = 0.0, py::arg("y") = 0.0, py::arg("z") = 0.0, py::arg("parent") = py::none(),
      "A Vorn_3DParticleEmitter with CreateParticleEmitter() (200 particles, \"Gravity\"), OnLoad\n"
      "and no FX; a root emitter joins ObjectArray_3D.");
}

}  // namespace

void bind_particles(py::module_& m) {
  bind_particle(m);
  bind_emitter(m);
  bind_factory(m);
}

}  // namespace vorn::py_bind
