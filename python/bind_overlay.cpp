// Overlays: the axis gizmo and 2D text (particles join later).
#include <memory>

#include "bind_common.h"
#include "bind_node.h"
#include "node_trampoline.h"
#include "node_views.h"
#include "overlay/axis.h"
#include "overlay/text.h"

namespace vorn::py_bind {
namespace {

void bind_axis(py::module_& m) {
  py::class_<Vorn_3DAxis, Vorn_3DGameNode, PyNode<Vorn_3DAxis>, std::shared_ptr<Vorn_3DAxis>> cls(
      m, "Vorn_3DAxis",
      "The scene's gizmo: bound to one node, it shows three axes on it and drags the node\n"
      "along a picked axis. An unbound gizmo draws and picks nothing.",
      py::dynamic_attr(), twin_type_setup());
  def_node_init<Vorn_3DAxis, PyNode<Vorn_3DAxis>>(cls, "Vorn_3DAxis", "__init__(self, x=0, y=0, z=0, parent=None)");
  cls.def(
         "Binding",
         [](Vorn_3DAxis& a, py::handle node) { a.Binding(node.is_none() ? nullptr : node_arg(node, "Vorn_3DAxis.Binding")); },
         py::arg("gameNode"), "Binds the gizmo to a node (None unbinds) and takes the axis program once.")
      .def("SetType", &Vorn_3DAxis::SetType, py::arg("type"),
           "Sets AxisType: \"t\" translates (picks and drags), \"s\" shows the scale shape,\n"
           "\"r\" the rotation rings.")
      .def("GetType", &Vorn_3DAxis::GetType, "AxisType.")
      .def("BuildTranslateAxisPickTriangle", &Vorn_3DAxis::BuildTranslateAxisPickTriangle,
           "Fills PickTriangleDict['t'] with the three arrows: a bar of half-width 0.1 to 2.0\n"
           "and a head of half-width 0.2 to 2.5 along each axis. The constructor calls it.")
      .def("BuildScaleAxisPickTriangle", &Vorn_3DAxis::BuildScaleAxisPickTriangle,
           "Does nothing: the scale shape has no pick surface.")
      .def("DrogMoving", &Vorn_3DAxis::DrogMoving, py::arg("offsetX"), py::arg("offsetY"),
           "Moves the bound node along PickedAxis by mouse offsets: each offset times its\n"
           "dot with the axis's unit direction on the screen, times 0.002 * 800 / SCREEN_WIDTH\n"
           "(x) or 0.002 * 600 / SCREEN_HEIGHT (y), clamped to [-1, 1]; the node moves by\n"
           "half the sum. Needs the active camera's matrices of the running pass.")
      .def("Drag", &Vorn_3DAxis::Drag, py::arg("offsetX"), py::arg("offsetY"),
           "With a picked translate axis: stores the offsets for the next draw, sets Dragging\n"
           "and returns True; otherwise False.")
      .def("ReleaseDrag", &Vorn_3DAxis::ReleaseDrag, "Ends the drag; the picked axis stays.")
      .def("draw_translate", &Vorn_3DAxis::draw_translate,
           "The arrows of PickTriangleDict['t'] as GL triangles: x red, y green, z blue, the\n"
           "picked axis yellow.")
      .def("draw_scale", &Vorn_3DAxis::draw_scale, "A bar with a block on its end per axis, as GL quads.")
      .def("draw_rotate", &Vorn_3DAxis::draw_rotate, "A ring about each axis, as GL quads.")
      .def("draw_picktriangle", &Vorn_3DAxis::draw_picktriangle,
           "Run inside draw: while Dragging, DrogMoving(offsetX, offsetY) and the offsets go\n"
           "back to 0; otherwise checkPick with the scene's ray of the stored mouse position.")
      .def_property(
          "GameNode", [](const Vorn_3DAxis& a) { return node_to_py(a.GameNode.lock()); },
          [](Vorn_3DAxis& a, py::handle node) {
            a.GameNode = node.is_none() ? nullptr : node_arg(node, "Vorn_3DAxis.GameNode");
          },
          "The bound node, or None.")
      .def_readwrite("AxisType", &Vorn_3DAxis::AxisType, "\"t\", \"s\", \"r\" or None.")
      .def_readwrite("Dragging", &Vorn_3DAxis::Dragging, "A drag is under way.")
      .def_readwrite("offsetX", &Vorn_3DAxis::offsetX, "Mouse offset waiting for the next draw.")
      .def_readwrite("offsetY", &Vorn_3DAxis::offsetY, "Mouse offset waiting for the next draw.")
      .def_readwrite("PickedAxis", &Vorn_3DAxis::PickedAxis, "\"x\", \"y\", \"z\" or None.")
      .def_readwrite("PickTriangleDict", &Vorn_3DAxis::PickTriangleDict,
                     "Type to axis to vertices ([x, y, z], three a triangle) in the gizmo's own\n"
                     "space. Reading gives a copy; assign a whole new dict to change it.");
}

}  // namespace

void bind_overlay(py::module_& m) {
  bind_axis(m);
  py::class_<Vorn_Text, std::shared_ptr<Vorn_Text>> text(
      m, "Vorn_Text",
      "A line of bitmap text placed in window pixels (x from the left, y down from the top\n"
      "of the window to the top of the line). Not a scene node: no transform, no shader.",
      py::dynamic_attr(), twin_type_setup());
  for (const auto& [name, value] :
       {std::pair{"FT_8_BY_13", Vorn_Text::FT_8_BY_13}, {"FT_9_BY_15", Vorn_Text::FT_9_BY_15},
        {"FT_TIMES_ROMAN_10", Vorn_Text::FT_TIMES_ROMAN_10}, {"FT_TIMES_ROMAN_24", Vorn_Text::FT_TIMES_ROMAN_24},
        {"FT_HELVETICA_10", Vorn_Text::FT_HELVETICA_10}, {"FT_HELVETICA_12", Vorn_Text::FT_HELVETICA_12},
        {"FT_HELVETICA_18", Vorn_Text::FT_HELVETICA_18}, {"FT_ALIGN_LEFT", Vorn_Text::FT_ALIGN_LEFT},
        {"FT_ALIGN_CENTER", Vorn_Text::FT_ALIGN_CENTER}, {"FT_ALIGN_RIGHT", Vorn_Text::FT_ALIGN_RIGHT}}) {
    text.attr(name) = value;
  }
  text.def(py::init([](double x, double y, std::string line, int font) {
             return std::make_shared<Vorn_Text>(x, y, std::move(line), font);
           }),
           py::arg("x"), py::arg("y"), py::arg("text"), py::arg("font") = Vorn_Text::FT_8_BY_13);
  attach_twin_after_init(text, "Vorn_Text(x, y, text, font=FT_8_BY_13)");
  text
      .def_readwrite("x", &Vorn_Text::x, "Left pixel (before alignment).")
      .def_readwrite("y", &Vorn_Text::y, "Top pixel of the line, counted down from the window's top.")
      .def_readwrite("text", &Vorn_Text::text, "The line.")
      .def_readwrite("font", &Vorn_Text::font, "Font constant (FT_...).")
      .def_readwrite("height", &Vorn_Text::height, "Declared line height; not used in drawing.")
      .def_readwrite("r", &Vorn_Text::r, "Colour component, 0 to 1.")
      .def_readwrite("g", &Vorn_Text::g, "Colour component, 0 to 1.")
      .def_readwrite("b", &Vorn_Text::b, "Colour component, 0 to 1.")
      .def_readwrite("borderMode", &Vorn_Text::borderMode, "Draw a black shadow.")
      .def_readwrite("alignMode", &Vorn_Text::alignMode, "Alignment about x (FT_ALIGN_...).")
      .def_property_readonly(
          "FontDict",
          [](const Vorn_Text& t) {
            py::dict out;
            for (const auto& [key, info] : t.FontDict) out[py::int_(key)] = py::make_tuple(key, info.height);
            return out;
          },
          "Font constant to (font constant, height).")
      .def("SetText", &Vorn_Text::SetText, py::arg("text"), "Replaces the line.")
      .def("SetFont", &Vorn_Text::SetFont, py::arg("font"), "Sets the font; an unknown font draws nothing.")
      .def("SetColor", &Vorn_Text::SetColor, py::arg("r"), py::arg("g"), py::arg("b"), "Sets the colour.")
      .def("SetBorderMode", &Vorn_Text::SetBorderMode, py::arg("borderMode") = true, "Turns the shadow on or off.")
      .def("SetAlignMode", &Vorn_Text::SetAlignMode, py::arg("alignMode") = Vorn_Text::FT_ALIGN_LEFT,
           "Left, centre or right alignment about x.")
      .def("update", &Vorn_Text::update, py::arg("delay"), "Does nothing.")
      .def("draw", &Vorn_Text::draw, "Draws the line with the raster position (needs a GL context).");
}

}  // namespace vorn::py_bind
