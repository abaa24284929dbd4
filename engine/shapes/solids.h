#pragma once
// The solid primitives and the point light, for code that uses the whole family.
//
// Every creating operation replaces the node's geometry (submeshes and buffers; colours
// stay) and ends in BuildVBO. A step count of 0 is a ZeroDivisionError and a negative
// one makes an empty grid; a solid of more than 2^24 vertices is a ValueError. Both
// errors leave the node as it was. Sizes and radii are not checked.
#include "shapes/box.h"
#include "shapes/capsule.h"
#include "shapes/circle.h"
#include "shapes/conus.h"
#include "shapes/cylinder.h"
#include "shapes/point_light.h"
#include "shapes/sphere.h"
#include "shapes/torus.h"
#include "shapes/tube.h"
