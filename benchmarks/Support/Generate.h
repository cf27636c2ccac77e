// benchmarks/Support/Generate.h: inputs made up where the real ones aren't at hand.
#pragma once

#include <string>

// The input of that name as UTF-8: words of syllables in the script of the name, chosen as rarely
// as words of a language are, some 1 MB in all of the inputs. Always the same bytes.
std::string Generate(const std::string& name);
