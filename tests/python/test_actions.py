"""Timed actions as scripts use them, on a 2D target written in Python."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V


class Sprite(V.ActionTarget):
    """A 2D target of a script's own; its world position is offset like a child's."""

    def __init__(self, x=0.0, y=0.0, z=0.0):
        super().__init__()
        self.pos = [x, y, z]
        self.offset = [0.0, 0.0, 0.0]
        self.scale = [1.0, 1.0]
        self.angle = 0.0
        self.visible = True

    def SetXYZ(self, x, y, z):
        self.pos = [x, y, z]

    def GetWorldXYZ(self):
        return V.Vector3(*(p + o for p, o in zip(self.pos, self.offset)))

    def GetSX(self):
        return self.scale[0]

    def GetSY(self):
        return self.scale[1]

    def SetSXY(self, sx, sy):
        self.scale = [sx, sy]

    def GetAngle(self):
        return self.angle

    def SetAngle(self, angle):
        self.angle = angle

    def IsVisible(self):
        return self.visible

    def SetVisible(self, visible):
        self.visible = visible


def test_move_to_passes_the_lerped_positions_and_ends_exactly():
    sprite = Sprite(1, 2, 3)
    sprite.offset = [1, 0, 0]
    move = V.MoveToAction(2, 10, 6, -5)
    assert str(move.dstPostion) == "10,6,-5"
    move.SetTarget(sprite)
    assert move.targetNode is sprite
    move.Run()
    assert str(move.srcPostion) == "2,2,3"  # the script's ints stay ints
    seen = []
    for _ in range(4):
        move.update(0.5)
        seen.append(sprite.pos)
    assert seen == [[4, 3, 1], [6, 4, -1], [8, 5, -3], [10, 6, -5]]
    assert move.IsOver() and move.IsRunning()
    assert move.GetRunTime() == 2.0


def test_player_plays_a_queue_and_other_actions_reach_their_ends():
    sprite = Sprite()
    sprite.angle = 30
    player = V.ActionPlayer()
    player.SetTarget(sprite)
    rotate = V.RotateByAction(0.5, 90)
    scale = V.ScaleByAction(1, 1, 2)
    player.AddActions([rotate, scale], [V.GAction()])
    assert player.ActionArray[0] == [rotate, scale]
    assert len(player.ActionArray) == 2
    assert scale.targetNode is sprite
    player.Run()
    player.update(1.0)  # rotation ends; the scale starts but waits for the next frame
    assert sprite.angle == 120
    assert player.ActionIndex == 1 and scale.IsRunning() and sprite.scale == [1.0, 1.0]
    player.update(0.5)
    assert sprite.scale == [1.5, 2.0]
    player.update(0.5)
    assert sprite.scale == [2.0, 3.0]
    assert player.IsOver()
    player.CleanUp()
    assert player.ActionArray is None

    empty = V.ActionPlayer()
    empty.SetTarget(sprite)
    empty.AddActions([])
    with pytest.raises(IndexError):
        empty.Run()


def test_blink_pause_and_stop_oddities():
    sprite = Sprite()
    blink = V.BlinkAction(1)
    assert blink.blinkcount == -1 and blink.delaytime == -1.0
    blink.SetTarget(sprite)
    blink.Run()
    blink.update(0.1)
    assert blink.IsOver() and sprite.visible

    rot = V.RotateToAction(4, 40)
    rot.SetTarget(sprite)
    rot.Run()
    rot.update(1)
    rot.Pause()
    rot.update(1)
    assert not hasattr(rot, "time")
    rot.Stop()
    assert rot.time == 0 and rot.GetRunTime() == 1
    rot.Resume()
    rot.update(1)
    assert rot.GetRunTime() == 2 and sprite.angle == 20


def test_callbacks_receive_params_and_raise_through():
    sprite = Sprite()
    got = []
    params = {"score": 3}
    call = V.CallBackAction(0.5, got.append, params)
    assert call.callbackParams is params
    call.SetTarget(sprite)
    call.Run()
    call.update(0.25)
    assert got == []
    call.update(0.25)
    assert got == [params] and got[0] is params and call.IsOver()

    bare = V.CallBackAction(0, None, None)
    bare.SetTarget(sprite)
    bare.Run()
    bare.update(0)
    assert bare.IsOver()

    class Boom(Exception):
        pass

    def explode(_):
        raise Boom("from the callback")

    player = V.ActionPlayer()
    player.SetTarget(sprite)
    player.AddActions([V.CallBackAction(0, explode, None)])
    player.Run()
    with pytest.raises(Boom, match="from the callback"):
        player.update(0.1)


def test_python_subclass_of_gaction_is_played_and_kept_whole():
    sprite = Sprite()
    log = []

    class Count(V.GAction):
        def __init__(self, frames):
            super().__init__()
            self.frames = frames

        def Run(self):
            super().Run()
            log.append("run")

        def update(self, delay):
            super().update(delay)
            log.append(self.GetRunTime())
            if self.GetRunTime() >= self.frames:
                self.over = True

    class Halfway(V.MoveToAction):
        def update(self, delay):
            super().update(delay * 0.5)

    player = V.ActionPlayer()
    player.SetTarget(sprite)
    # The script keeps no reference to the actions: the player must keep them whole.
    player.AddActions([Count(2), Halfway(1, 4, 0, 0)])
    gc.collect()
    player.Run()
    player.update(1)
    player.update(1)
    assert log == ["run", 1.0, 2.0]
    player.update(1)
    assert sprite.pos == [2.0, 0.0, 0.0]
    assert isinstance(player.ActionArray[0][0], V.GAction) and player.ActionArray[0][0].frames == 2


def test_target_is_held_weakly():
    move = V.MoveToAction(1, 5, 5, 5)
    sprite = Sprite()
    ref = weakref.ref(sprite)
    move.SetTarget(sprite)
    move.Run()
    del sprite
    gc.collect()
    assert ref() is None
    assert move.targetNode is None
    move.update(1)  # no target any more: nothing happens
    assert not move.IsOver()


def test_wrong_argument_types_raise_type_error():
    with pytest.raises(TypeError, match="MoveToAction: x must be a number"):
        V.MoveToAction(1, "a", 2, 3)
    with pytest.raises(TypeError):
        V.RotateByAction("1", 2)
    with pytest.raises(TypeError, match="callable"):
        V.CallBackAction(1, 5, None)
    with pytest.raises(TypeError, match="ActionTarget"):
        V.GAction().SetTarget(object())
    player = V.ActionPlayer()
    with pytest.raises(TypeError, match="sequence of GAction"):
        player.AddActions(V.GAction())
    with pytest.raises(TypeError, match="GAction objects"):
        player.AddActions([1, 2])
    with pytest.raises(TypeError):
        player.update("x")
    with pytest.raises(ZeroDivisionError):
        V.BlinkAction(1, 0)

    class Lazy(V.ActionTarget):
        pass

    lazy = Lazy()
    move = V.MoveToAction(1, 0, 0, 0)
    move.SetTarget(lazy)
    with pytest.raises(TypeError, match="GetWorldXYZ"):
        move.Run()


def test_vector2_values():
    a, b = V.Vector2(1, 2), V.Vector2(3, 6)
    assert str(a + b) == "4,8" and str(b - a) == "2,4"
    assert str(a * 0.5) == "0.5,1.0" and str(2 * a) == "2,4"
    assert str(a.lerp(b, 0.25)) == "1.5,3.0"
    assert str(V.ScaleToAction(1, 2, 3).srcScale) == "1,1"
    assert str(V.ScaleByAction(1, 2, 3).srcScale) == "0,0"
