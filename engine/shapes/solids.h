#pragma once
// The solid primitives and the point light, for code that uses the whole family.
#include "shapes/box.h"
#include "shapes/capsule.h"
#include "shapes/circle.h"
#include "shapes/conus.h"
#include "shapes/cylinder.h"
#include "shapes/point_light.h"
#include "shapes/sphere.h"
#include "shapes/torus.h"
#include "shapes/tube.h"
