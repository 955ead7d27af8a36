#pragma once
// Internal. Numbers of the texts that progress shows for operations on pictures. The texts are the application's.

namespace Vertiz {

constexpr unsigned kTextoLeer = 56001;
constexpr unsigned kTextoGrabar = 56002;
constexpr unsigned kTextoOperacion = 56003;  ///< every operation on the whole picture but those below
constexpr unsigned kTextoHistograma = 56004;
constexpr unsigned kTextoEstira = 56005;
constexpr unsigned kTextoBrillo = 56006;

}  // namespace Vertiz
