"""sway, whose Xwayland counts the pixels of the layout: the compositor scales it up."""

from wlroots import Wlroots


class Sway(Wlroots):
    name = "sway"
    options = ["xwayland force", "default_border none", "bindsym Ctrl+Mod1+Mod4+d exec quillfade toggle"]

    def launch(self):
        layout = self.layout
        lines = list(self.options)
        x = 0
        for output in self.outputs():
            mode = f"mode --custom {layout.width}x{layout.height}"
            lines.append(f"output {output} {mode} scale {layout.scale} position {x} 0 background #406080 solid_color")
            x += round(layout.width / layout.scale)
        config = self.runtime / "sway.conf"
        config.write_text("\n".join(lines) + "\n")
        self.compositor = self.spawn(["sway", "--config", str(config)], "sway", XDG_CURRENT_DESKTOP="sway")

    def version(self):
        return self.ask(["sway", "--version"]).decode().strip()
