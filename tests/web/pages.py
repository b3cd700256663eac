"""A browser that shows pages with episodes."""

from browser import Browser


class PageBrowser(Browser):
    """Shows the canvases of WebGPU too, for which the browser's own drawing must use Vulkan."""

    options = ("--ignore-gpu-blocklist", "--enable-unsafe-swiftshader", "--use-gl=angle",
               "--use-angle=vulkan", "--use-vulkan=swiftshader", "--enable-features=Vulkan")

    def hide_gpu(self):
        """The pages that are opened from now on have no WebGPU."""
        self.command("Page.enable")
        self.command("Page.addScriptToEvaluateOnNewDocument", source=
                     "Object.defineProperty(Navigator.prototype, 'gpu', {value: undefined});")

    def crash_gpu(self):
        """Ends the browser's process that uses the graphics device."""
        self._call("Browser.crashGpuProcess", {})
