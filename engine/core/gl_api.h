#pragma once
// The one way GL-facing files include OpenGL: the function loader first (it must come
// before any other GL header), then GLU and GLUT.
#include <epoxy/gl.h>
// Keep this order.
#include <GL/glu.h>
#include <GL/freeglut.h>
