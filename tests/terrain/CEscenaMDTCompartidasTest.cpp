// Draped images that references, links and copies of a scene share with it; areas of one colour.

#include "EscenaImagen.h"
#include "support/RasterVacio.h"

#include <algorithm>

namespace {

using Pasos = EscenaImagen::Pasos;
using Vertiz::CDibujo;

const Teselado kDosPorDos{2, 2, 8, 8, true};

class Compartidas : public Imagenes {
  protected:
    // A child of this type, the scene's.
    EscenaImagen* Hijo(EscenaImagen& padre, bool referencia, int tipo = 1) {
        auto* hijo = new EscenaImagen;
        hijo->SetTipo(tipo);
        if (referencia)
            padre.ReferenciaNuevo(hijo);
        else
            padre.VinculoNuevo(hijo);
        return hijo;
    }
    static bool MuestraLoMismo(const EscenaImagen& hijo, const EscenaImagen& padre) {
        if (hijo.m_Texturas.size() != padre.m_Texturas.size()) return false;
        for (std::size_t i = 0; i < hijo.m_Texturas.size(); ++i)
            if (hijo.m_Texturas[i].m_pTexturas != padre.m_Texturas[i].m_pTexturas ||
                hijo.m_Texturas[i].m_pFichero != padre.m_Texturas[i].m_pFichero)
                return false;
        return true;
    }
    std::size_t Ficheros() const { return m_carpeta.CuentaFicheros(); }
    static std::vector<double> Nombres(const CDataTexturas& r) {
        return {r.m_pTexturas->nombres.begin(), r.m_pTexturas->nombres.end()};
    }
    int CargaImagen(EscenaImagen& escena) {
        Vertiz::CDataImagen imagen;
        return escena.CargarImagen(L"orto", new RasterVacio, imagen, {}, Carpeta());
    }
    bool Llena(EscenaImagen& escena) {
        const bool r = escena.MakeCurrent(nullptr) && escena.Textura(0, 1, 1);
        wglMakeCurrent(nullptr, nullptr);
        return r;
    }
};

// ---- References and links ------------------------------------------------------------------------------------------

TEST_F(Compartidas, ChildrenThatAreTerrainsShowTheImages) {
    for (const bool referencia : {true, false})
        for (const int tipo : {1, 2, 3, 4, 7, 8}) {
            EscenaImagen* hijo = Hijo(m_escena, referencia, tipo);
            ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
            const bool esperado = tipo == 1 || tipo == 4;
            EXPECT_EQ(hijo->HayTexturas(), esperado) << tipo;
            EXPECT_EQ(MuestraLoMismo(*hijo, m_escena), esperado) << tipo;
            EXPECT_EQ(Llena(*hijo), esperado) << tipo;
            m_escena.ClearReferencias();
            m_escena.ClearVinculos();
            EXPECT_TRUE(Llena(m_escena)) << "a child that goes leaves file and objects alone";
        }
}

TEST_F(Compartidas, ANewChildTakesTheImagesOverInPlaceOfItsOwn) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos, "parent"), 1);
    for (const bool referencia : {true, false})
        for (const int tipo : {1, 4, 2, 7}) {
            auto* hijo = new EscenaImagen;
            Tela tela(16, 16);
            ASSERT_EQ(Crea(*hijo, tela), 1);
            hijo->SetTipo(tipo);
            ASSERT_EQ(Carga(*hijo, kDosPorDos, "child"), 1);
            if (referencia)
                m_escena.ReferenciaNuevo(hijo);
            else
                m_escena.VinculoNuevo(hijo);
            const bool toma = tipo == 1 || tipo == 4;
            EXPECT_EQ(MuestraLoMismo(*hijo, m_escena), toma) << tipo;
            EXPECT_EQ(std::filesystem::exists(m_carpeta / "child"), !toma) << tipo;
            m_escena.ClearReferencias();
            m_escena.ClearVinculos();
            EXPECT_EQ(Ficheros(), 1u) << "its own file goes with it";
        }
}

TEST_F(Compartidas, ARefusedChildKeepsItsOwn) {
    Hijo(m_escena, true);
    auto* padre = new EscenaImagen;
    padre->SetTipo(1);
    m_escena.ReferenciaNuevo(nullptr);
    m_escena.VinculoNuevo(&m_escena);
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    m_escena.ReferenciaNuevo(&m_escena);
    EXPECT_TRUE(m_escena.m_Texturas.at(0).EstaDisponible());
    delete padre;
}

TEST_F(Compartidas, ACutImageGoesToTheChildren) {
    EscenaImagen* referencia = Hijo(m_escena, true);
    EscenaImagen* vinculo = Hijo(m_escena, false, 4);
    ASSERT_EQ(CargaImagen(m_escena), 1);
    for (const EscenaImagen* hijo : {referencia, vinculo}) {
        EXPECT_TRUE(MuestraLoMismo(*hijo, m_escena));
        EXPECT_EQ(hijo->m_Texturas.at(0).m_sNombreImagen, L"orto");
    }
}

TEST_F(Compartidas, TheParentsUnloadReachesThemAll) {
    EscenaImagen* referencia = Hijo(m_escena, true);
    EscenaImagen* vinculo = Hijo(m_escena, false, 4);
    ASSERT_EQ(
        m_escena.CargarFicheroTexturasTemp({kDosPorDos.Escribe(m_carpeta, "a"), kDosPorDos.Escribe(m_carpeta, "b")}),
        1);
    m_escena.DescargarImagen(0, 0, 0, 1);
    for (EscenaImagen* hijo : {referencia, vinculo}) {
        ASSERT_EQ(hijo->m_Texturas.size(), 2u);
        EXPECT_EQ(hijo->m_Texturas[0].m_pFichero, nullptr) << "nobody looks at what is gone";
        EXPECT_EQ(hijo->m_Texturas[0].m_pTexturas, nullptr);
        EXPECT_EQ(hijo->m_Texturas[0].IdTextura(0, 0), 0u);
        EXPECT_FALSE(Llena(*hijo));
        EXPECT_TRUE(hijo->m_Texturas[1].EstaDisponible());
    }
    m_escena.DescargarImagen(0, 1, 1, 1);
    EXPECT_EQ(referencia->m_Texturas.size(), 1u);
    EXPECT_EQ(vinculo->m_Texturas.size(), 1u);
    EXPECT_TRUE(MuestraLoMismo(*vinculo, m_escena));
    EXPECT_EQ(Ficheros(), 1u);
}

TEST_F(Compartidas, AChildsOwnUnloadTakesItsRecordOnly) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    const RegistroGL registro;
    hijo->DescargarImagen(0, 1, 0, 1);
    EXPECT_EQ(hijo->m_Texturas.size(), 1u);
    hijo->DescargarImagen(0, 1, 1, 1);
    EXPECT_TRUE(hijo->m_Texturas.empty());
    EXPECT_EQ(registro.Cuenta("glDeleteTextures"), 0u);
    EXPECT_EQ(Ficheros(), 1u);
    EXPECT_TRUE(Llena(m_escena));
}

TEST_F(Compartidas, AChildMakesNoObjectsInPlaceOfTheParents) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    const RegistroGL registro;
    EXPECT_EQ(hijo->GrabaFicheroTexturas(0), 1);
    EXPECT_EQ(registro.Cuenta("glGenTextures"), 0u);
    EXPECT_TRUE(MuestraLoMismo(*hijo, m_escena));
}

TEST_F(Compartidas, AnImageOfAChildsOwnGoesWithTheChild) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    ASSERT_EQ(CargaImagen(*hijo), 1);
    ASSERT_TRUE(hijo->m_Texturas.at(0).EstaDisponible());
    const auto nombres = Nombres(hijo->m_Texturas[0]);
    EXPECT_EQ(Ficheros(), 1u);
    const RegistroGL registro;
    m_escena.ClearReferencias();
    EXPECT_EQ(Ficheros(), 0u);
    EXPECT_EQ(registro.Numeros("glDeleteTextures"), std::vector<std::vector<double>>{nombres});
}

TEST_F(Compartidas, AFileOfAChildsOwnForAParentsRecordLeavesTheParentsAlone) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    const std::string bytes = kDosPorDos.Fichero();
    ASSERT_EQ(hijo->GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 0, Carpeta()), 1);
    EXPECT_EQ(Ficheros(), 2u);
    EXPECT_TRUE(Llena(m_escena));
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp(m_escena.m_Texturas), 1);
    EXPECT_EQ(Ficheros(), 1u);
    hijo->CambiaSizeTexturas(4, 4, Carpeta(), 1);
    EXPECT_EQ(hijo->m_Texturas.at(0).m_nAnchoTextura, 4);
    EXPECT_EQ(m_escena.m_Texturas.at(0).m_nAnchoTextura, 8);
    EXPECT_TRUE(Llena(m_escena));
    EXPECT_EQ(Ficheros(), 2u);
}

TEST_F(Compartidas, AChildThatIsHandedBackLooksAtNothingOnceTheParentUnloads) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    hijo->SetNombre(L"h");
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    const std::unique_ptr<CGL> suelto(m_escena.BorraReferencia(L"h"));
    ASSERT_EQ(suelto.get(), hijo);
    m_escena.DescargarImagen(0, 1, 1, 1);
    EXPECT_FALSE(hijo->m_Texturas.at(0).EstaDisponible());
    EXPECT_FALSE(hijo->Textura(0, 0, 0));
}

TEST_F(Compartidas, AnImageByItselfHandsNothingOn) {
    m_escena.SetTipo(3);
    EscenaImagen* referencia = Hijo(m_escena, true);
    EscenaImagen* vinculo = Hijo(m_escena, false);
    ASSERT_EQ(CargaImagen(m_escena), 1);
    EXPECT_TRUE(m_escena.m_Texturas.at(0).m_sNombreImagen.IsEmpty()) << "nor does it take the name";
    m_escena.CargarTexturaSimple(new CDibujo<int>, 1);
    Hijo(m_escena, true);
    for (EscenaImagen* hijo : {referencia, vinculo, static_cast<EscenaImagen*>(m_escena.m_Referencias.at(1))}) {
        EXPECT_FALSE(hijo->HayTexturas());
        EXPECT_TRUE(hijo->m_TexturasSimples.empty());
        hijo->SetDataTexturas(std::vector<CDataTexturas>(1));
    }
    m_escena.DescargarImagen(0, 1, 1, 1);
    EXPECT_TRUE(referencia->HayTexturas());
    EXPECT_TRUE(vinculo->HayTexturas());
}

// ---- Copies --------------------------------------------------------------------------------------------------------

TEST_F(Compartidas, ACopyHasFilesOfItsOwnAndSharesTheObjects) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    m_escena.CargarTexturaSimple(new CDibujo<int>, 77);
    EscenaImagen copia(m_escena), asignada;
    asignada = m_escena;
    EXPECT_EQ(Ficheros(), 3u);
    for (EscenaImagen* otra : {&copia, &asignada}) {
        ASSERT_TRUE(otra->m_Texturas.at(0).EstaDisponible());
        EXPECT_EQ(otra->m_Texturas[0].IdTextura(1, 1), m_escena.m_Texturas[0].IdTextura(1, 1));
        EXPECT_NE(otra->m_Texturas[0].m_sNombreFichero, m_escena.m_Texturas[0].m_sNombreFichero);
        EXPECT_EQ(Contenido(otra->m_Texturas[0].m_sNombreFichero), kDosPorDos.Fichero());
        EXPECT_EQ(otra->m_TexturasSimples.at(0).m_nColor, 77u);
        EXPECT_NE(otra->m_TexturasSimples[0].m_pDibujo, m_escena.m_TexturasSimples[0].m_pDibujo);
    }
    EXPECT_EQ(m_escena.m_Texturas[0].m_bCompartida, 1);
}

TEST_F(Compartidas, TheObjectsAreDeletedOnceByWhoeverLeavesLast) {
    for (const bool copiaPrimero : {true, false}) {
        auto fuente = std::make_unique<EscenaImagen>();
        Tela tela(16, 16);
        ASSERT_EQ(Crea(*fuente, tela), 1);
        ASSERT_EQ(Carga(*fuente, kDosPorDos), 1);
        const auto nombres = Nombres(fuente->m_Texturas[0]);
        auto copia = std::make_unique<EscenaImagen>(*fuente);
        auto& primera = copiaPrimero ? copia : fuente;
        auto& ultima = copiaPrimero ? fuente : copia;
        const RegistroGL registro;
        primera.reset();
        EXPECT_EQ(registro.Cuenta("glDeleteTextures"), 0u);
        EXPECT_TRUE(Llena(*ultima)) << "it goes on drawing";
        ultima.reset();
        EXPECT_EQ(registro.Numeros("glDeleteTextures"), std::vector<std::vector<double>>{nombres});
        EXPECT_EQ(Ficheros(), 0u);
    }
}

TEST_F(Compartidas, WhatACopyLoadsByItselfGoesWithItAlone) {
    EscenaImagen otra;
    auto copia = std::make_unique<EscenaImagen>(m_escena);
    ASSERT_EQ(Carga(*copia, kDosPorDos), 1);
    const auto nombres = Nombres(copia->m_Texturas[0]);
    for (const bool destruida : {false, true}) {
        if (destruida) {
            copia = std::make_unique<EscenaImagen>(m_escena);
            ASSERT_EQ(Carga(*copia, kDosPorDos), 1);
        }
        const RegistroGL registro;
        if (destruida) copia->Destruir();  // as a deriving scene's destructor does
        copia.reset();
        EXPECT_EQ(registro.Cuenta("glDeleteTextures"), 1u) << destruida;
        EXPECT_EQ(Ficheros(), 0u);
    }
}

TEST_F(Compartidas, AChildSharedWithACopyGoesOnWhenItsFirstParentIsGone) {
    auto fuente = std::make_unique<EscenaImagen>();
    Tela tela(16, 16);
    ASSERT_EQ(Crea(*fuente, tela), 1);
    EscenaImagen* hijo = Hijo(*fuente, true);
    ASSERT_EQ(Carga(*fuente, kDosPorDos), 1);
    EscenaImagen copia(*fuente);
    ASSERT_EQ(copia.m_Referencias.at(0), hijo);
    fuente.reset();
    EXPECT_TRUE(hijo->m_Texturas.at(0).EstaDisponible());
    ASSERT_TRUE(copia.MakeCurrent(nullptr));
    EXPECT_TRUE(hijo->Textura(0, 1, 1));
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(Ficheros(), 1u);
}

TEST_F(Compartidas, AssignmentLetsGoOfWhatWasThere) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos, "a"), 1);
    EscenaImagen otra;
    Tela tela(16, 16);
    ASSERT_EQ(Crea(otra, tela), 1);
    ASSERT_EQ(Carga(otra, kDosPorDos, "b"), 1);
    const auto nombres = Nombres(otra.m_Texturas[0]);
    const RegistroGL registro;
    otra = m_escena;
    EXPECT_EQ(registro.Numeros("glDeleteTextures"), std::vector<std::vector<double>>{nombres});
    EXPECT_FALSE(std::filesystem::exists(m_carpeta / "b"));
    EXPECT_EQ(Ficheros(), 2u);
    const EscenaImagen& misma = otra;
    otra = misma;
    EXPECT_TRUE(otra.m_Texturas.at(0).EstaDisponible());
}

TEST_F(Compartidas, ACopyOfAChildLooksAtTheParentsImagesToo) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    {
        const EscenaImagen copia(*hijo);
        EXPECT_TRUE(MuestraLoMismo(copia, m_escena));
        EXPECT_EQ(Ficheros(), 1u);
    }
    EXPECT_TRUE(Llena(m_escena));
    EXPECT_EQ(Ficheros(), 1u);
}

// ---- Areas of one colour -------------------------------------------------------------------------------------------

TEST_F(Compartidas, AreasAreTiedHereAndInTheChildren) {
    EscenaImagen* referencia = Hijo(m_escena, true);
    EscenaImagen* vinculo = Hijo(m_escena, false, 4);
    EscenaImagen* otro = Hijo(m_escena, false, 7);
    auto* dibujo = new CDibujo<int>;
    EXPECT_EQ(m_escena.CargarTexturaSimple(new CDibujo<int>, 1), 1);
    EXPECT_EQ(m_escena.CargarTexturaSimple(dibujo, 0x00ABCDEF), 1);
    for (EscenaImagen* e : {&m_escena, referencia, vinculo}) {
        EXPECT_EQ(e->m_Simples, (Pasos{{0, 2}, {1, 2}}));
        ASSERT_EQ(e->m_TexturasSimples.size(), 2u);
        EXPECT_EQ(e->m_TexturasSimples[1].m_nColor, 0x00ABCDEFu);
        EXPECT_EQ(e->m_TexturasSimples[1].m_pDibujo.get(), dibujo);
    }
    EXPECT_TRUE(otro->m_TexturasSimples.empty());
    m_escena.DescargarTexturaSimple(0);
    for (EscenaImagen* e : {&m_escena, referencia, vinculo}) {
        ASSERT_EQ(e->m_TexturasSimples.size(), 1u);
        EXPECT_EQ(e->m_TexturasSimples[0].m_pDibujo.get(), dibujo);
    }
    m_escena.DescargarTexturaSimple(7);
    EXPECT_EQ(referencia->m_TexturasSimples.size(), 1u);
}

TEST_F(Compartidas, AreasThatCannotBeTiedHereAreNotHandedOn) {
    EscenaImagen* hijo = Hijo(m_escena, true);
    m_escena.m_nFallaEn = 0;
    EXPECT_EQ(m_escena.CargarTexturaSimple(new CDibujo<int>, 1), 0);
    EXPECT_EQ(m_escena.CargarTexturaSimple(nullptr, 1), 0);
    EXPECT_EQ(m_escena.m_TexturasSimples.size(), 1u);
    EXPECT_TRUE(hijo->m_TexturasSimples.empty());
    m_escena.m_nFallaEn = -1;
    hijo->m_nFallaEn = 1;
    EXPECT_EQ(m_escena.CargarTexturaSimple(new CDibujo<int>, 1), 1) << "a child's failure doesn't count";
    EXPECT_EQ(hijo->m_Simples, (Pasos{{1, 2}})) << "with this scene's index";
}

TEST_F(Compartidas, ColoursChangeWithinRange) {
    m_escena.CargarTexturaSimple(new CDibujo<int>, 1);
    m_escena.CambiaColorTexturaSimple(0, 5);
    m_escena.CambiaColorTexturaSimple(1, 6);
    std::vector<CDataTexturaSimple> simples;
    m_escena.GetDataTexturasSimples(simples);
    ASSERT_EQ(simples.size(), 1u);
    EXPECT_EQ(simples[0].m_nColor, 5u);
    EXPECT_EQ(simples[0].m_pDibujo, m_escena.m_TexturasSimples[0].m_pDibujo);
}

}  // namespace
