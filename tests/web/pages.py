"""A browser that shows pages with episodes."""

from browser import Browser

# Keys without a character (W3C WebDriver 2, "Keyboard actions").
END = "\ue010"


class PageBrowser(Browser):
    """Shows the canvases of WebGPU too, for which the browser's own drawing must use Vulkan."""

    options = ("--ignore-gpu-blocklist", "--enable-unsafe-swiftshader", "--use-gl=angle",
               "--use-angle=vulkan", "--use-vulkan=swiftshader", "--enable-features=Vulkan")

    def click(self, expression):
        """Clicks on an element as a visitor does: it must be visible, and below nothing else."""
        self.driver_command(f"/element/{self.element(expression)}/click")

    def press(self, *keys):
        """Presses keys one after the other, which the focused element gets."""
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.driver_command("/actions", actions=[
            {"type": "key", "id": "keyboard", "actions": actions}])

    def hide_gpu(self):
        """The pages that are opened from now on have no WebGPU."""
        self.command("Page.addScriptToEvaluateOnNewDocument", source=
                     "Object.defineProperty(Navigator.prototype, 'gpu', {value: undefined});")

    def crash_gpu(self):
        """Ends the browser's process that uses the graphics device."""
        self.command("Browser.crashGpuProcess")
