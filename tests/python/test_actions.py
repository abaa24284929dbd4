"""Timed actions as scripts use them, on a 2D target written in Python."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V


class Sprite(V.ActionTarget):
    """A 2D target of a script's own; its world position is offset like a child's."""

    def __init__(self, x=0.0, y=0.0, z=0.0):
        super().__init__()
        self.pos, self.offset, self.scale, self.angle = [x, y, z], [0.0, 0.0, 0.0], [1.0, 1.0], 0.0

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


def test_player_calls_the_script_target_for_rotation_and_scale():
    sprite = Sprite()
    player = V.ActionPlayer()
    player.SetTarget(sprite)
    rotate, scale = V.RotateByAction(0.5, 90), V.ScaleByAction(1, 1, 2)
    player.AddActions([rotate, scale], [V.GAction()])
    assert player.ActionArray[0] == [rotate, scale] and scale.targetNode is sprite
    player.Run()
    player.update(1.0)
    player.update(1.0)
    assert (sprite.angle, sprite.scale, player.IsOver()) == (90, [2.0, 3.0], True)
    player.CleanUp()
    assert player.ActionArray is None
    # A paused action has no time attribute until Stop gives it one.
    rot = V.RotateToAction(4, 40)
    rot.SetTarget(sprite)
    rot.Run()
    rot.Pause()
    assert not hasattr(rot, "time")
    rot.Stop()
    assert rot.time == 0


def test_callbacks_receive_params_and_raise_through():
    sprite = Sprite()
    got = []
    params = {"score": 3}
    call = V.CallBackAction(0.5, got.append, params)
    bare = V.CallBackAction(0, None, None)
    for action in (call, bare):
        action.SetTarget(sprite)
        action.Run()
    call.update(0.25)
    bare.update(0)
    assert got == [] and bare.IsOver()
    call.update(0.25)
    assert got == [params] and got[0] is params and call.IsOver()

    def explode(_):
        raise LookupError("from the callback")

    player = V.ActionPlayer()
    player.SetTarget(sprite)
    player.AddActions([V.CallBackAction(0, explode, None)])
    player.Run()
    with pytest.raises(LookupError, match="from the callback"):
        player.update(0.1)


class Count(V.GAction):
    """An action written by the script: ends after a number of seconds of its own."""

    def __init__(self, seconds, log):
        super().__init__()
        self.seconds, self.log = seconds, log

    def Run(self):
        super().Run()
        self.log.append("run")

    def update(self, delay):
        super().update(delay)
        self.log.append(self.GetRunTime())
        self.over = self.GetRunTime() >= self.seconds


class Halfway(V.MoveToAction):
    def update(self, delay):
        super().update(delay * 0.5)


def test_python_subclasses_of_actions_are_played_and_kept_whole():
    sprite, log = Sprite(), []
    player = V.ActionPlayer()
    player.SetTarget(sprite)
    # The script keeps no reference to the actions: the player must keep them whole.
    player.AddActions([Count(2, log), Halfway(1, 4, 0, 0)])
    gc.collect()
    player.Run()
    for _ in range(3):
        player.update(1)
    assert log == ["run", 1.0, 2.0] and sprite.pos == [2.0, 0.0, 0.0]
    assert player.ActionArray[0][0].seconds == 2


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


class Lazy(V.ActionTarget):
    """A target that lacks the operations an action needs."""


def _run_on_lazy():
    move, lazy = V.MoveToAction(1, 0, 0, 0), Lazy()  # the action holds its target weakly
    move.SetTarget(lazy)
    move.Run()


@pytest.mark.parametrize("call, error, text", [
    (lambda: V.MoveToAction(1, "a", 2, 3), TypeError, "MoveToAction: x must be a number"),
    (lambda: V.RotateByAction("1", 2), TypeError, ""),
    (lambda: V.CallBackAction(1, 5, None), TypeError, "callable"),
    (lambda: V.GAction().SetTarget(object()), TypeError, "ActionTarget"),
    (lambda: V.ActionPlayer().AddActions(V.GAction()), TypeError, "sequence of GAction"),
    (lambda: V.ActionPlayer().AddActions([1, 2]), TypeError, "GAction objects"),
    (lambda: V.ActionPlayer().update("x"), TypeError, ""),
    (lambda: V.BlinkAction(1, 0), ZeroDivisionError, ""),
    (_run_on_lazy, TypeError, "GetWorldXYZ"),
])
def test_wrong_arguments_raise(call, error, text):
    with pytest.raises(error, match=text):
        call()


def test_vector2_values_print_ints_as_ints():
    a, b = V.Vector2(1, 2), V.Vector2(3, 6)
    assert [str(v) for v in (a + b, b - a, a * 0.5, 2 * a, a.lerp(b, 0.25))] == [
        "4,8", "2,4", "0.5,1.0", "2,4", "1.5,3.0"]
    assert str(V.ScaleToAction(1, 2, 3).srcScale) == "1,1"
