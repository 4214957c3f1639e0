"""What is tried on each desktop, step by step. A step ends with a sentence about what was seen, or with a Failure."""

import pathlib
import time

import numpy
from PIL import Image

import pixels
from desktop import PATIENCE, Failure, wait_for
from programs import Content, Gromit, Quillfade
from recorder import Recorder

RETRY_AFTER = 5  # seconds
GRAIN = 16  # the area's edges are multiples of it, so that they are whole pixels at every scale


def require(condition, what):
    if not condition:
        raise Failure(what)


class Steps:
    def __init__(self, desktop, executable, pictures):
        self.desktop = desktop
        self.executable = executable
        self.pictures = pathlib.Path(pictures)
        self.pictures.mkdir(parents=True, exist_ok=True)
        self.quillfade = self.gromit = None
        self.contents = []
        self.step = ""

    # Looking at the screen.

    def measure_screen(self):
        """The covered area in the X server's pixels, in points, and in those of the pictures."""
        x_size = self.desktop.x_size()
        self.x_width, self.x_height = x_size[0] // self.desktop.layout.outputs, x_size[1]
        picture = self.desktop.picture()
        self.factor = picture.shape[1] / x_size[0]
        self.screen = (0, 0, picture.shape[1] // self.desktop.layout.outputs, picture.shape[0])
        x, width = (self.x_width // 4 // GRAIN * GRAIN, self.x_width // 2 // GRAIN * GRAIN)
        y, height = (self.x_height // 4 // GRAIN * GRAIN, self.x_height // 2 // GRAIN * GRAIN)
        self.area = (x, y, width, height)
        # In points, y up; the primary screen may be the right one.
        left = x - self.desktop.primary_corner()[0]
        self.region = f"{{{{{left}, {self.x_height - y - height}}}, {{{width}, {height}}}}}"
        self.inner, self.outer = self.within_and_around(self.area)
        return f"{picture.shape[1]} x {picture.shape[0]} pixels, X counts {x_size[0]} x {self.x_height}"

    def within_and_around(self, area):
        """The pixels that the area surely has, and those that it may touch."""
        place = pixels.scaled(area, self.factor)
        # A compositor that scales blends the pixels along the edges.
        margin = 0 if self.desktop.layout.scale == 1 else 2
        return pixels.grown(place, -margin), pixels.grown(place, margin)

    def save(self, name, picture=None):
        picture = self.desktop.picture() if picture is None else picture
        Image.fromarray(numpy.ascontiguousarray(picture)).save(self.pictures / f"{name}.png")
        return picture

    def shows(self, condition, what, deadline=15.0):
        """The first picture that meets the condition."""
        last = []

        def look():
            last[:] = [self.desktop.picture()]
            return condition(last[0])

        try:
            wait_for(look, what, deadline)
        except Failure as failure:
            self.save("FAILED-" + self.step.replace(" ", "-"), last[0])
            raise Failure(f"{failure}{self.what_stands_still()}") from None
        return last[0]

    def what_stands_still(self):
        """The screens whose content does not go on, for a message."""
        if len(self.contents) < self.desktop.layout.outputs:
            return ""
        early = self.numbers(self.desktop.picture())
        time.sleep(1)
        late = self.numbers(self.desktop.picture())
        still = [str(screen + 1) for screen, number in enumerate(late) if number == early[screen]]
        return f"; nothing moves on screen {' and '.join(still)}" if still else ""

    def numbers(self, picture):
        """Those that the contents of the screens show outside the area."""
        left, top, width, height = self.screen
        screens = [(left + output * width, top, width, height) for output in range(self.desktop.layout.outputs)]
        return [pixels.counter(picture, screen, pixels.OUTER_COUNTER_TOP) for screen in screens]

    def inside(self, picture):
        return pixels.ink_inside(picture, self.inner)

    def outside(self, picture):
        return self.around(picture, self.inner, self.outer)

    def around(self, picture, inner, outer):
        """The ink outside, as a picture of its own."""
        mask = pixels.ink_outside(picture, outer)
        if self.desktop.layout.scale % 1:
            # KWin draws a window with a hole in bands of rows, which blend where they meet, over the whole width.
            mask[outer[1] : inner[1]] = False
            mask[inner[1] + inner[3] : outer[1] + outer[3]] = False
        return mask

    def is_clear(self, picture):
        """No ink inside, and not the black cover that waits for its first frame."""
        return self.inside(picture) == 0 and self.number(picture) != pixels.BLACK

    def is_as_if_clean(self, picture):
        everything = (0, 0, picture.shape[1], picture.shape[0])
        return pixels.differences(self.still(picture), self.still(self.clean), everything) == 0

    def still(self, picture):
        """Without what moves."""
        left, top, width, height = self.screen
        for output in range(self.desktop.layout.outputs):
            picture = pixels.without_counter(picture, (left + output * width, top, width, height))
        return picture

    def number(self, picture, top=pixels.INNER_COUNTER_TOP):
        return pixels.counter(picture, self.screen, top)

    def steady(self, what, condition=lambda picture: True, looks=4):
        """A picture that stays as it is, but for the counters. Ink may arrive in parts."""
        previous, alike = None, 0

        def look(picture):
            nonlocal previous, alike
            still = self.still(picture)
            alike = alike + 1 if previous is not None and numpy.array_equal(still, previous) else 1
            previous = still
            return alike >= looks and condition(picture)

        return self.shows(look, what)

    # The states that steps begin with.

    def begin(self):
        """Quillfade covers nothing, and the two strokes are there."""
        for monitor in range(len(self.contents), self.desktop.layout.outputs):
            self.open_content(monitor)
        if not self.gromit or not self.gromit.is_running():
            self.restart_ink()
        if not self.quillfade or not self.quillfade.is_running():
            self.quillfade = Quillfade(self.desktop, self.executable, self.region)
        if '"enabled": true' in self.quillfade.command("status", "--json"):
            self.quillfade.command("toggle")
        return self.steady("the ink is whole", lambda picture: self.inside(picture) > 1000)

    def open_content(self, monitor):
        self.contents.append(Content(self.desktop, monitor))
        # The desktop without the window may look like any number.
        self.shows(lambda picture: 0 < self.numbers(picture)[monitor] < 1000, "the content is there", 30)

    def restart_ink(self):
        self.gromit = Gromit(self.desktop)
        self.draw_base()

    def start_ink(self):
        """Before Quillfade runs; says whether it took a second start."""
        try:
            self.restart_ink()
        except Failure:
            # On GNOME, gromit-mpx sometimes takes its orders and draws nothing.
            self.gromit.kill()
            self.restart_ink()
            return ", gromit-mpx started twice, since it drew nothing at first"
        return ""

    def draw_base(self):
        w, h = self.x_width, self.x_height
        self.draw((w // 10, h // 8, w * 9 // 10, h * 7 // 8), (w // 10, h * 7 // 8, w * 9 // 10, h // 8))

    def draw(self, *strokes):
        """Until the last of them is seen outside the area."""
        spot = pixels.grown(pixels.scaled((*strokes[-1][:2], 0, 0), self.factor), max(2, round(3 * self.factor)))
        since = -RETRY_AFTER

        def is_seen(picture):
            nonlocal since
            # Once more after a while: a program that has just started may begin anew when its window gets its size.
            if time.monotonic() > since + RETRY_AFTER:
                self.gromit.draw(*strokes)
                since = time.monotonic()
            return pixels.ink_inside(picture, spot) > 4

        self.shows(is_seen, "the new ink is seen outside")

    def restart_content(self, pictures_a_second=10):
        """A full-screen window that opens later, and whose number begins anew."""
        last = self.number(self.desktop.picture(), pixels.OUTER_COUNTER_TOP)
        self.contents[0].kill()
        self.contents[0] = Content(self.desktop, 0, pictures_a_second)
        self.shows(lambda picture: 0 < self.number(picture, pixels.OUTER_COUNTER_TOP) < last, "a later window is there")

    def tear_down(self):
        for program in (self.quillfade, self.gromit):
            if program and program.is_running():
                program.kill()
        self.quillfade = self.gromit = None

    def cover(self):
        self.quillfade.command("toggle")
        return self.shows(self.is_clear, "no ink inside the area")

    def uncover(self, before):
        """Until the ink is as it was."""
        self.quillfade.command("toggle")
        return self.until_as(before, "all the ink is back")

    def until_as(self, before, what, deadline=15.0):
        want = pixels.ink(before)
        try:
            return self.shows(lambda picture: numpy.array_equal(pixels.ink(picture), want), what, deadline)
        except Failure:
            self.save(f"FAILED-{self.step.replace(' ', '-')}-as-before", before)
            raise

    # The steps.

    def start(self):
        self.contents = [Content(self.desktop, monitor) for monitor in range(self.desktop.layout.outputs)]
        said = self.measure_screen()
        # The desktop without the window may look like any number.
        first = self.shows(lambda picture: 0 < self.number(picture) < 1000, "the content is there", 30)
        self.shows(lambda picture: self.number(first) < self.number(picture) < 1000, "the content moves")
        self.clean = self.steady("the content is whole")
        ink = self.start_ink()
        self.begin()
        layout = self.desktop.layout
        points = f"{round(layout.width / layout.scale)} x {round(layout.height / layout.scale)}"
        size = (self.desktop.logs / "content0.log").read_text().split("\n")[-2]
        require(size == points, f"the screen has {size} points, not {points}")
        return f"{said}, Wayland programs {size} for each screen{ink}"

    def before_covered_uncovered(self):
        before = self.save("1-before", self.begin())
        self.cover()
        covered = self.save("2-covered", self.steady("the covered screen stands", self.is_clear))
        wrong = pixels.differences(self.still(self.clean), self.still(covered), self.inner)
        require(wrong == 0, f"{wrong} pixels inside are not what lies beneath")
        require(numpy.array_equal(self.outside(before), self.outside(covered)), "the ink outside changed")
        require(self.number(covered) > self.number(before), "the content inside is not newer")
        status = self.quillfade.command("status")
        require("hidden" in status and "Note:" not in status, f"status says: {status}")
        uncovered = self.uncover(before)
        self.save("3-uncovered", uncovered)
        return (
            f"ink inside {self.inside(before)} / 0 / {self.inside(uncovered)} pixels, outside "
            f"{self.outside(before).sum()} throughout, content {self.number(before)} / {self.number(covered)} / "
            f"{self.number(uncovered)}"
        )

    def recorded(self):
        """Everything that may happen while covered, with the recording on."""
        before = self.begin()
        w, h = self.x_width, self.x_height
        recorder = Recorder(self.desktop, self.inner, self.outer, self.screen)
        wait_for(lambda: any(frame.inside for frame in recorder.frames), "the recording shows the ink")
        begun = time.monotonic()
        self.cover()
        self.draw((w // 20, h // 2, w * 19 // 20, h // 2))
        drawn = self.save("4-new-ink")
        require(self.outside(drawn).sum() > self.outside(before).sum(), "the new ink is not outside either")
        self.gromit.kill()
        self.shows(lambda picture: self.outside(picture).sum() == 0, "the ink of the killed program is gone")
        self.gromit = Gromit(self.desktop)
        self.draw((w // 20, h * 5 // 8, w * 19 // 20, h * 5 // 8))
        self.save("5-new-program")
        time.sleep(0.5)
        ended = time.monotonic()
        frames = [frame for frame in recorder.stop() if begun < frame.time < ended]
        self.quillfade.command("toggle")
        waiting = next((frame for frame in frames if frame.number == pixels.BLACK), None)
        if waiting:
            self.save("10-waiting", waiting.look)
        first = next((index for index, frame in enumerate(frames) if frame.inside == 0), len(frames))
        covered = frames[first:]
        inked = [frame for frame in covered if frame.inside > 0]
        for count, frame in enumerate(inked[:3]):
            self.save(f"FAILED-recorded-{count}", frame.look)
        require(len(covered) >= 10, f"only {len(covered)} frames were recorded")
        require(not inked, f"{len(inked)} of {len(covered)} recorded frames show ink inside")
        # Until the first live frame, the cover is black and says that it waits.
        live = next((index for index, frame in enumerate(covered) if frame.number != pixels.BLACK), 0)
        numbers = [frame.number for frame in covered[live:]]
        require(pixels.BLACK not in numbers, "the live cover turned black")
        goes_on = sorted(numbers) == numbers and numbers[-1] > numbers[0]
        require(goes_on, f"the recorded content does not go on: {numbers}")
        self.gromit.kill()
        return (
            f"0 of {len(covered)} recorded frames with ink inside ({live} of them before the live cover), new ink, a "
            "killed and a new program included; "
            f"outside {covered[0].outside} to {covered[-1].outside} pixels, content {numbers[0]} to {numbers[-1]}"
        )

    def drawn_while_covered_comes_out(self):
        before = self.begin()
        self.cover()
        y = self.x_height // 2
        self.draw((self.x_width // 20, y, self.x_width * 19 // 20, y))
        self.quillfade.command("toggle")
        stroke = pixels.scaled((self.area[0] + 8, y - 2, self.area[2] - 16, 4), self.factor)
        whole = 0.99 * stroke[2] * stroke[3]
        picture = self.shows(lambda picture: pixels.ink_inside(picture, stroke) >= whole, "the new stroke is whole")
        self.gromit.kill()
        return f"ink inside {self.inside(before)} pixels before, {self.inside(picture)} afterwards"

    def peek(self):
        before = self.begin()
        self.cover()
        self.quillfade.command("peek", "2")
        self.until_as(before, "the ink is there during the peek")
        self.shows(self.is_clear, "the ink is gone after the peek")
        self.uncover(before)
        return "ink there, then gone, then there"

    def whole_screen(self):
        before = self.begin()
        self.quillfade.command("whole-screen")
        picture = self.shows(self.is_as_if_clean, "no ink anywhere, and what lies beneath")
        self.save("6-whole-screen", picture)
        self.uncover(before)
        self.quillfade.kill()
        return f"{pixels.ink(before).sum()} pixels of ink, then 0, then all"

    def solid(self):
        before = self.begin()
        self.quillfade.command("style", "solid")
        self.quillfade.command("toggle")

        middle = pixels.grown(self.inner, -round(2 * max(1, self.factor)))  # without its edge

        def is_solid(picture):
            part = pixels.part(picture, middle)
            return bool((part == part[0, 0]).all())

        picture = self.shows(is_solid, "the area has one colour")
        self.save("7-solid", picture)
        require(numpy.array_equal(self.outside(before), self.outside(picture)), "the ink outside changed")
        self.restart_content()
        require(is_solid(self.steady("the cover with a later window")), "a later window is above the cover")
        self.quillfade.command("toggle")
        self.until_as(before, "all the ink is back")
        self.quillfade.command("style", "live")
        color = tuple(map(int, pixels.part(picture, middle)[0, 0]))
        return f"one colour, {color}, above a later full-screen window, too"

    def outline(self):
        self.begin()
        self.quillfade.command("outline", "on")
        self.cover()
        rim = pixels.grown(pixels.scaled(self.area, self.factor), -max(1, round(self.factor)))

        def has_outline(picture):
            wrong = pixels.differences(picture, self.clean, pixels.scaled(self.area, self.factor))
            return wrong - pixels.differences(picture, self.clean, rim) >= rim[2]

        picture = self.shows(has_outline, "the outline is seen")
        self.save("8-outline", picture)
        self.quillfade.command("outline", "off")
        self.quillfade.command("toggle")
        return "a hairline along the edges"

    def area_selected(self):
        """Dragged from near the top-left corner of the screen, and cancelled once before."""
        before = self.begin()
        self.quillfade.command("select-area")
        light = before.mean()
        dark = self.shows(lambda picture: picture.mean() < 0.8 * light, "the screen is dimmed")
        self.save("9-selection", dark)
        presses = self.cancel_selection(before)
        self.quillfade.command("select-area")
        self.shows(lambda picture: picture.mean() < 0.8 * light, "the screen is dimmed once more")
        right, bottom = self.x_width // 2 // GRAIN * GRAIN, self.x_height // 2 // GRAIN * GRAIN
        self.desktop.drag((GRAIN, GRAIN), (right, bottom))
        inner, outer = self.within_and_around((GRAIN, GRAIN, right - GRAIN, bottom - GRAIN))

        def is_covered(picture):
            as_before = numpy.array_equal(self.around(picture, inner, outer), self.around(before, inner, outer))
            wrong = pixels.differences(self.still(self.clean), self.still(picture), inner)
            return as_before and wrong == 0

        self.save("10-selected", self.shows(is_covered, "the dragged area shows what lies beneath, and no other"))
        gone = pixels.ink_inside(before, inner)
        require(gone > 1000, "there was no ink in that area")
        self.quillfade.command("toggle")
        self.until_as(before, "all the ink is back")
        self.quillfade.kill()
        return (
            f"cancelled with Escape, pressed {presses} times; then {right - GRAIN} x {bottom - GRAIN} pixels: {gone} "
            "pixels of ink, then 0"
        )

    def cancel_selection(self, before):
        """Presses Escape as somebody would: again if nothing happens for a while. How often it was pressed."""
        presses, pressed = 0, -PATIENCE
        want = pixels.ink(before)

        def is_cancelled(picture):
            nonlocal presses, pressed
            if time.monotonic() > pressed + PATIENCE:
                self.desktop.press_escape()
                presses, pressed = presses + 1, time.monotonic()
            return numpy.array_equal(pixels.ink(picture), want)

        self.shows(is_cancelled, "the selection is cancelled")
        return presses

    def keyboard(self):
        """What is pressed while the screen is covered reaches the program beneath."""
        before = self.begin()
        self.restart_content()  # a window that has just opened has the keyboard
        for style in ("live", "solid"):
            self.quillfade.command("style", style)
            self.quillfade.command("toggle")
            self.shows(lambda picture: self.inside(picture) == 0, "no ink inside the area")
            pressed = self.contents[0].keys()
            self.desktop.press_escape()
            wait_for(lambda pressed=pressed: self.contents[0].keys() == pressed + 1, f"a key, with the {style} cover")
            self.uncover(before)
        self.quillfade.command("style", "live")
        return "the program beneath has it, with either cover"

    def hot_key(self):
        before = self.begin()
        if self.desktop.asks_for_keys:
            self.agree_to_keys()
        said = self.quillfade.command("keys")
        self.desktop.press_toggle()
        self.shows(self.is_clear, f"no ink inside the area; the keys: {said}")
        self.desktop.press_toggle()
        self.until_as(before, "all the ink is back")
        return f"pressed twice, {self.desktop.keys}"

    def agree_to_keys(self):
        """Such a desktop asks only for installed programs."""
        prefix = pathlib.Path(self.desktop.environment["HOME"]) / ".local"
        build = pathlib.Path(self.executable).parents[2]
        self.desktop.ask(["cmake", "--install", str(build), "--prefix", str(prefix)])
        self.quillfade.kill()
        self.quillfade = Quillfade(self.desktop, str(prefix / "bin" / "quillfade"), self.region, "application")
        self.desktop.agree()
        wait_for(lambda: "waiting" not in self.quillfade.command("keys"), "the desktop has answered")
        said = self.quillfade.command("keys")
        require("declined" not in said, f"the user has agreed, but the keys are: {said}")

    def menu(self):
        """Over the empty desktop: the bar is not seen above a full-screen window."""
        self.begin()
        for content in self.contents:
            content.kill()
        self.contents = []

        def has_ink(picture):
            return self.inside(picture) > 1000

        with self.desktop.tray() as tray:
            before = self.steady("the desktop with ink")
            lines = tray.choose("Hide Annotations", lambda: self.save("12-menu"))
            self.shows(lambda picture: self.inside(picture) == 0, "no ink inside the area")
            # While the menu is open, the cover is down.
            tray.choose(
                "Hide Annotations", lambda: self.save("13-menu-while-covered", self.shows(has_ink, "the ink is back"))
            )
            self.until_as(before, "all the ink is back")
        return f"its lines: {', '.join(lines)}; the first chosen twice"

    def locked(self):
        """Commands in between change what comes afterwards."""
        before = self.begin()
        self.cover()
        self.desktop.lock()
        everything = pixels.ink(before).sum()

        def is_locked(picture):
            return pixels.ink(picture).sum() < everything / 10

        self.save("14-locked", self.shows(is_locked, "the locked screen"))
        said = "the desktop does not tell programs of it"
        if self.desktop.tells_of_lock:
            refused = self.quillfade.run("select-area")
            require(refused.returncode == 1, "an area was selected on the locked screen")
            said = f"selecting: {refused.stderr.decode().strip()}"
        self.desktop.unlock()
        self.shows(self.is_clear, "no ink inside the area")
        self.desktop.lock()
        self.shows(is_locked, "the locked screen once more")
        self.quillfade.command("toggle")
        self.desktop.unlock()
        self.until_as(before, "all the ink is back")
        return f"the cover is back afterwards, or not if it was switched off; {said}"

    def killed(self):
        before = self.begin()
        self.cover()
        self.quillfade.kill()
        at = time.monotonic()
        self.until_as(before, "all the ink is back")
        took = time.monotonic() - at
        wait_for(lambda: not self.desktop.processes("quillfade-guard"), "the guard ends")
        require(took < 2, f"the ink came back only after {took:.1f} s")
        return f"all the ink back {took:.1f} s after kill -9, and the guard gone"

    def run_demo(self):
        """As a new user starts it, from the tree."""
        before = self.begin()
        self.quillfade.command("quit")
        self.quillfade.process.wait(10)
        run = ["bash", "-c", f"cd {pathlib.Path(__file__).resolve().parents[2]} && exec ./run"]
        self.quillfade.process = self.desktop.spawn(run, "run", QUILLFADE_DEMO="1")
        wait_for(self.quillfade.answers, "Quillfade answers", 60)
        everything = pixels.ink(before).sum()
        picture = self.shows(lambda picture: 0 < pixels.ink(picture).sum() < everything, "some of the ink is gone")
        self.save("11-demo", self.steady("the demonstration stands"))
        self.quillfade.command("quit")
        self.until_as(before, "all the ink is back")
        self.quillfade.process.wait(10)
        return f"{everything} pixels of ink, then {pixels.ink(picture).sum()}, then all"

    def many(self, times=200):
        before = self.begin()
        for time_ in range(times):
            self.quillfade.command("toggle")
            if time_ % 20 == 0:
                self.shows(self.is_clear, f"no ink inside the area, time {time_}")
            self.quillfade.command("toggle")
        self.until_as(before, "all the ink is back")
        self.cover()
        self.uncover(before)
        return f"{times} covers and uncovers, and the ink is as it was"

    def how_fast(self, times=20):
        """From the command's start to a picture without ink; a picture takes a while itself."""
        before = self.begin()
        took = []
        for _ in range(times):
            at = time.monotonic()
            self.cover()
            took.append(time.monotonic() - at)
            self.uncover(before)
        took.sort()
        at = time.monotonic()
        self.desktop.picture()
        picture = time.monotonic() - at
        return (
            f"command to ink gone p50 {took[times // 2] * 1000:.0f} ms, p95 {took[times * 19 // 20] * 1000:.0f} ms, "
            f"of which a picture is {picture * 1000:.0f} ms"
        )

    def cost(self, seconds=10):
        """Processor time, with something to show thirty times a second and with nothing that changes."""
        self.begin()
        self.restart_content(30)
        said = []
        for what in ("thirty pictures a second", "idle"):
            if what == "idle":
                self.contents[0].pause()
            without = self.load(seconds)
            self.cover()
            covered = self.load(seconds)
            self.quillfade.command("toggle")
            self.contents[0].resume()
            said.append(f"{what}: {without:.1f} % of a core without, {covered:.1f} % with the cover")
        self.restart_content()
        return "compositor, Xwayland and Quillfade, " + "; ".join(said)

    def load(self, seconds):
        pids = [self.desktop.compositor.pid, self.quillfade.process.pid, *self.desktop.processes("Xwayland")]
        begin, at = sum(map(self.desktop.processor_time, pids)), time.monotonic()
        time.sleep(seconds)
        return (sum(map(self.desktop.processor_time, pids)) - begin) / (time.monotonic() - at) * 100

    def xwayland_killed(self):
        self.begin()
        self.cover()
        (server,) = self.desktop.processes("Xwayland")
        self.desktop.kill(server)
        wait_for(lambda: server not in self.desktop.processes("Xwayland"), "Xwayland is gone")
        require(self.desktop.compositor.poll() is None, "the compositor went with it")
        self.gromit.kill()
        self.desktop.x_size()
        self.restart_ink()
        self.shows(self.is_clear, "the cover is there as before")
        require(self.quillfade.is_running(), f"Quillfade ended with {self.quillfade.process.returncode}")
        self.quillfade.command("toggle")
        self.shows(lambda picture: self.inside(picture) > 1000, "the new ink is there")
        return "Quillfade goes on in the new Xwayland, with the cover as it was"

    def two_outputs(self):
        self.begin()
        w, h = self.x_width, self.x_height
        left, right = self.screen, (self.screen[2], 0, self.screen[2], self.screen[3])
        self.draw((w // 2, h // 5, w * 3 // 2, h // 5))
        before = self.steady("the ink is on both screens", lambda picture: pixels.ink_inside(picture, right) > 1000)
        self.quillfade.command("toggle")
        covered = self.shows(self.is_clear, "no ink inside the area")
        require(numpy.array_equal(self.outside(before), self.outside(covered)), "the ink outside changed")
        self.save("1-area", covered)
        self.quillfade.command("toggle")
        self.until_as(before, "all the ink is back")
        self.quillfade.command("whole-screen")
        whole = self.shows(self.is_as_if_clean, "no ink on both screens, and what lies beneath")
        self.save("2-whole-screen", whole)
        self.quillfade.command("toggle")
        self.until_as(before, "all the ink is back")
        counts = [pixels.ink_inside(before, each) for each in (left, right)]
        return f"ink {counts[0]} and {counts[1]} pixels, then 0 on both, then all"


MAIN = [
    ("start", Steps.start),
    ("cover and uncover", Steps.before_covered_uncovered),
    ("recorded while covered", Steps.recorded),
    ("drawn while covered", Steps.drawn_while_covered_comes_out),
    ("peek", Steps.peek),
    ("whole screen", Steps.whole_screen),
    ("solid cover", Steps.solid),
    ("outline", Steps.outline),
    ("area selection", Steps.area_selected),
    ("keyboard", Steps.keyboard),
    ("hot key", Steps.hot_key),
    ("tray menu", Steps.menu),
    ("locked", Steps.locked),
    ("kill -9", Steps.killed),
    ("run", Steps.run_demo),
    ("two hundred times", Steps.many),
    ("how fast", Steps.how_fast),
    ("processor time", Steps.cost),
    ("Xwayland killed", Steps.xwayland_killed),
]
SCALED = [MAIN[0], MAIN[1], MAIN[2], MAIN[5], MAIN[6], MAIN[7], MAIN[8]]
TWO_OUTPUTS = [MAIN[0], MAIN[1], ("two outputs", Steps.two_outputs)]
