"""Types that stub generation cannot see in the extension.

The bindings take many arguments as plain Python objects (numbers that may be int or
float, callbacks, node references, sequences) and return plain objects from factories.
The tables below name the type each of them really has. A key is a parameter, attribute
or operation name; "Class.name" or "Class.operation.parameter" narrows it to one place.
"""

NODE = "Vorn_3DGameNode"
CALLBACK = "Optional[Callable[..., Any]]"
FLOATS = "Sequence[float]"

# Arguments bound as any Python object.
PARAMETERS = {
    **{name: "float" for name in (
        "x", "y", "z", "duration", "angle", "sx", "sy", "n", "progress", "radius", "radius_in",
        "radius_out", "height", "size_x", "size_y", "size_z", "Length", "currTime", "targetX",
        "targetY", "targetZ", "range", "statckR", "statckY", "statckZ", "blinkcount")},
    "parent": f"Optional[{NODE}]",
    **{name: NODE for name in ("child", "node", "targetNode", "targetObj", "gameNode", "object3D", "other")},
    "camera": "Vorn_3DCamera",
    "activeCamera": "Vorn_3DCamera",
    **{name: CALLBACK for name in ("callbackFunc", "func", "function")},
    "functionName": "Union[str, Callable[..., Any]]",
    "objList": f"Sequence[{NODE}]",
    "actionqueue": "Sequence[GAction]",
    **{name: FLOATS for name in ("HeightArray", "vertexArray")},
    **{name: "Union[Vector3, Sequence[float]]" for name in ("Vec3FloatList", "Pt", "Dir")},
    **{name: "Union[_Matrix4d, Sequence[Any]]" for name in ("Matrix", "matFloatList")},
    "xy": "Sequence[int]",
    "Vorn_Image.__init__.size": "Sequence[int]",
    "focusIn": "bool",
}

# Attributes read and written as any Python object.
ATTRIBUTES = {
    **{name: CALLBACK for name in ("callbackFunc", "PickDownFunction", "PickUpFunction", "UpdateFunction")},
    **{name: f"Optional[{NODE}]" for name in (
        "GameNode", "targetNode", "tagetNode", "followTarget", "parent", "currSkyObject",
        "sceneSkyBox", "sceneSkyShpere")},
    **{name: "Optional[Vorn_3DCamera]" for name in (
        "ActiveCamera", "FollowCamera", "ShadowMapCamera", "VRLeftCamera", "VRRightCamera")},
    "HeightArray": "List[float]",
    "X": "float",
    "Y": "float",
    "Z": "float",
}

# Operations that return any Python object: the engine's factories and look-ups.
RETURNS = {
    **{name: NODE for name in ("Create2DImage", "Create2DRect", "Create3DGameNode")},
    **{f"Create{shape}": f"Vorn_3D{shape}" for shape in (
        "Box", "Capsule", "Circle", "Conus", "Cylinder", "DrawNode", "Grass", "Ocean", "ParticleEmitter",
        "Plane", "PointLight", "Sphere", "Terrain", "TiledMap", "Torus", "Tube")},
    "Vorn_3Dcene.CreateCamera": "Vorn_3DCamera",
    "Vorn_3Dcene.CreateShadowMapCamera": "Vorn_3DCamera",
    "Vorn_3Dcene.GetActiveCamera": "Vorn_3DCamera",
    "Vorn_3Dcene.CreateMeshFromFile": "Vorn_3DMesh",
    "Vorn_3Dcene.CreateMeshFromModelFile": "Vorn_3DMesh",
    "Vorn_3Dcene.LoadTerrain": "Optional[Vorn_3DTerrain]",
    "Vorn_3Dcene.LoadOcean": "Optional[Vorn_3DOcean]",
    **{f"Vorn_3Dcene.{name}": f"Optional[{NODE}]" for name in (
        "LoadSkyBox", "LoadSkySphere", "GetCurrDrawNode", "GetCurrSkyObject", "Quey2DObjectByTag",
        "Quey3DObjectByTag", "Quey3DTerrainByTag", "QueyPointLightByTag")},
    **{f"Vorn_3DGameNode.Get{axis}": "float" for axis in "XYZ"},
    "Vector3.dot": "float",
}

# The module globals that live in the engine. Objects are declared without None: a script
# reads them once the engine has made them (after PyGameResManager, Vorn_3Dcene).
GLOBALS = {
    "TICKS_PER_SEC": "int",
    "DEBUG_MODE": "bool",
    "SCREEN_WIDTH": "int",
    "SCREEN_HEIGHT": "int",
    "pickDrawNode": "Vorn_3DDrawNode",
    "ResManagerInstance": "PyGameResManager",
    "FXManagerInstance": "Vorn_FXManage",
    "openGLScene": "Vorn_3Dcene",
}
