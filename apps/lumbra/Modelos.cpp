// The kinds of models, each with the reader that makes it.

#include "Modelos.h"

#include "Foto.h"
#include "Terreno.h"

#include <stdexcept>

namespace {

std::unique_ptr<Modelo> RechazaFoto(const std::string& ruta, const Marco&, Progreso&, const Aviso&) {
    throw std::runtime_error(ruta + ": a picture, which has no place beside a terrain; --drape lays it over one");
}

bool Cualquiera(const std::string&, Progreso&) {
    return true;
}

// A kind of file that can stand beside a model. The first kind that takes a file reads it; the last one takes all, and
// tells what is wrong with those that are nothing.
struct Clase {
    bool (*EsSuyo)(const std::string& ruta, Progreso& progreso);
    std::unique_ptr<Modelo> (*Lee)(const std::string& ruta, const Marco& marco, Progreso& progreso, const Aviso& avisa);
};

constexpr Clase kClases[] = {
    {EsFoto, RechazaFoto},
    {Cualquiera, ModeloTerreno::Lee},
};

}  // namespace

std::unique_ptr<Modelo> LeeModelo(const std::string& ruta, const Marco& marco, Progreso& progreso, const Aviso& avisa) {
    for (const Clase& clase : kClases)
        if (clase.EsSuyo(ruta, progreso)) return clase.Lee(ruta, marco, progreso, avisa);
    return nullptr;
}
