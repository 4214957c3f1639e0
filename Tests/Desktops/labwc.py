"""labwc, whose Xwayland counts the pixels of the layout: the compositor scales it up."""

from wlroots import Wlroots


class Labwc(Wlroots):
    name = "labwc"

    def launch(self):
        action = '<action name="Execute" command="quillfade toggle"/>'
        binding = f'<keyboard><default/><keybind key="C-A-W-d">{action}</keybind></keyboard>'
        (self.runtime / "rc.xml").write_text(f"<labwc_config>{binding}</labwc_config>\n")
        self.environment["XDG_CURRENT_DESKTOP"] = "labwc:wlroots"
        self.compositor = self.spawn(["labwc", "--config-dir", str(self.runtime)], "labwc")

    def arrange(self):
        super().arrange()
        layout = self.layout
        x = 0
        for output in self.outputs():
            size = f"{layout.width}x{layout.height}"
            self.ask(["wlr-randr", "--output", output, "--custom-mode", size, "--scale", str(layout.scale)])
            self.ask(["wlr-randr", "--output", output, "--pos", f"{x},0"])
            x += round(layout.width / layout.scale)

    def version(self):
        return self.ask(["labwc", "--version"]).decode().split("(")[0].strip()
