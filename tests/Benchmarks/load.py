"""Loads a program of the benchmarks, whose name has no suffix, as a module."""
import importlib.machinery
import importlib.util


def load(name, path):
    loader = importlib.machinery.SourceFileLoader(name, str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module
