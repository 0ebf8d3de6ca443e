"""Where the library stands in the package, beside its modules, the wheel is for that library's system alone."""
from pathlib import Path

from setuptools import Distribution, setup
from wheel.bdist_wheel import bdist_wheel

HAS_LIBRARY = any((Path(__file__).parent / "pvwapi" / name).exists() for name in ("libpvwapi_c.so.1", "pvwapi_c.dll"))


class OfOneSystem(Distribution):
    def has_ext_modules(self):
        return HAS_LIBRARY


class ForAnyPython(bdist_wheel):
    def get_tag(self):
        return ("py3", "none", super().get_tag()[2])


setup(distclass=OfOneSystem, cmdclass={"bdist_wheel": ForAnyPython})
