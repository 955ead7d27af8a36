// Loading and unloading draped images, and what references, links and copies have of them.

#include "EscenaImagen.h"
#include "support/DiscoLleno.h"
#include "support/RasterVacio.h"

#include <algorithm>

namespace {

using Pasos = EscenaImagen::Pasos;
using Vertiz::CDibujo;

const Teselado kDosPorDos{2, 2, 8, 8, true};

// A raster that tells when it is freed.
class RasterContado : public RasterVacio {
  public:
    explicit RasterContado(int& vivos) : m_Vivos(vivos) { ++m_Vivos; }
    ~RasterContado() override { --m_Vivos; }

  private:
    int& m_Vivos;
};

class Texturas : public Imagenes {
  protected:
    int CargaImagen(EscenaImagen& escena, const wchar_t* nombre = L"orto.tif") {
        Vertiz::CDataImagen imagen;
        int vivos = 0;
        const int r = escena.CargarImagen(nombre, new RasterContado(vivos), imagen, {}, Carpeta());
        EXPECT_EQ(vivos, 0) << "the raster is always freed";
        return r;
    }
    std::size_t Ficheros() const { return m_carpeta.CuentaFicheros(); }
    // The textures deleted by what is done, in the order of the calls.
    template <class Hecho>
    std::vector<std::vector<double>> Borradas(Hecho hecho) {
        const RegistroGL registro;
        hecho();
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
        return registro.Numeros("glDeleteTextures");
    }
    static std::vector<double> Nombres(const CDataTexturas& r) {
        return {r.m_pTexturas->nombres.begin(), r.m_pTexturas->nombres.end()};
    }
};

// ---- Taking over records -------------------------------------------------------------------------------------------

TEST_F(Texturas, TakingARecordOverOpensItsFileAndMakesItsObjects) {
    EXPECT_FALSE(m_escena.HayTexturas());
    CDataTexturas r = kDosPorDos.Escribe(m_carpeta, "a");
    r.m_bCargada = r.m_bCompartida = 1;
    const RegistroGL registro;
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp({r}), 1);
    EXPECT_LLAMADAS(Solo(registro.Todas(), {"glGenTextures"}), {"glGenTextures(4)"});
    const CDataTexturas& mio = m_escena.m_Texturas.at(0);
    EXPECT_TRUE(mio.EstaDisponible());
    EXPECT_EQ(mio.m_bCargada + mio.m_bCompartida, 0);
    EXPECT_TRUE(m_escena.HayTexturas());
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(m_escena.GetFicheroTexturasTemp(0), r.m_sNombreFichero);
    EXPECT_EQ(m_escena.GetFicheroTexturasTemp(1), CString());
}

TEST_F(Texturas, TakingRecordsOverUnloadsThoseBefore) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos, "a"), 1);
    const auto nombres = Nombres(m_escena.m_Texturas[0]);
    const auto borradas = Borradas([&] { ASSERT_EQ(Carga(m_escena, kDosPorDos, "b"), 1); });
    EXPECT_EQ(borradas, std::vector<std::vector<double>>{nombres});
    EXPECT_EQ(m_escena.m_Texturas.size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(m_carpeta / "a"));
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp({}), 1);
    EXPECT_FALSE(m_escena.HayTexturas());
    EXPECT_EQ(Ficheros(), 0u);
}

TEST_F(Texturas, ASceneCanTakeItsOwnRecordsOverAgain) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp(m_escena.m_Texturas), 1);
    ASSERT_EQ(m_escena.m_Texturas.size(), 1u);
    EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible());
    EXPECT_EQ(Contenido(m_escena.m_Texturas[0].m_sNombreFichero), kDosPorDos.Fichero());
}

TEST_F(Texturas, WithoutAContextNothingIsTakenOver) {
    EscenaImagen sola;
    EXPECT_EQ(Carga(sola, kDosPorDos), 0);
}

TEST_F(Texturas, AFileThatCannotBeOpenedEndsItWithTheContextTaken) {
    CDataTexturas falta = kDosPorDos.Registro();
    falta.m_sNombreFichero = Ancha(m_carpeta / "none");
    const CDataTexturas primero = kDosPorDos.Escribe(m_carpeta, "a"), ultimo = kDosPorDos.Escribe(m_carpeta, "c");
    EXPECT_EQ(m_escena.CargarFicheroTexturasTemp({primero, falta, ultimo}), 0);
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    ASSERT_EQ(m_escena.m_Texturas.size(), 3u);
    EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible());
    EXPECT_EQ(m_escena.m_Texturas[1].m_pFichero, nullptr);
    EXPECT_FALSE(m_escena.m_Texturas[2].EstaDisponible());
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Texturas, AnErrorWithTheObjectsIsAFailure) {
    const FallaGL falla("glGenTextures", 1);
    EXPECT_EQ(Carga(m_escena, kDosPorDos), 0);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_FALSE(m_escena.m_Texturas.at(0).EstaDisponible());
    wglMakeCurrent(nullptr, nullptr);
}

// ---- Unloading -----------------------------------------------------------------------------------------------------

TEST_F(Texturas, AnUnloadedRecordCanBeLoadedAgain) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    m_escena.m_Texturas[0].m_bCargada = 1;
    const auto nombres = Nombres(m_escena.m_Texturas[0]);
    const auto borradas = Borradas([&] { m_escena.DescargarImagen(0, 0, 0, 1); });
    EXPECT_EQ(borradas, std::vector<std::vector<double>>{nombres});
    const CDataTexturas& r = m_escena.m_Texturas.at(0);
    EXPECT_EQ(r.m_pFichero, nullptr);
    EXPECT_EQ(r.m_pTexturas, nullptr);
    EXPECT_EQ(r.m_bCargada, 0);
    EXPECT_FALSE(r.m_sNombreFichero.IsEmpty());
    EXPECT_EQ(Ficheros(), 1u);
    std::vector<CDataTexturas> registros;
    m_escena.GetDataTexturas(registros);
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp(registros), 1);
    EXPECT_TRUE(m_escena.m_Texturas.at(0).EstaDisponible());
    EXPECT_EQ(Ficheros(), 1u);
}

TEST_F(Texturas, TheFileGoesWhenAskedAndTheRecordsBehindMoveDown) {
    ASSERT_EQ(
        m_escena.CargarFicheroTexturasTemp({kDosPorDos.Escribe(m_carpeta, "a"), kDosPorDos.Escribe(m_carpeta, "b"),
                                            kDosPorDos.Escribe(m_carpeta, "c")}),
        1);
    m_escena.DescargarImagen(1, 1, 1, 1);
    ASSERT_EQ(m_escena.m_Texturas.size(), 2u);
    EXPECT_FALSE(std::filesystem::exists(m_carpeta / "b"));
    EXPECT_EQ(m_escena.GetFicheroTexturasTemp(1), Ancha(m_carpeta / "c"));
    m_escena.DescargarImagen(0, 1, 0, 1);
    EXPECT_EQ(m_escena.m_Texturas.size(), 2u);
    EXPECT_FALSE(std::filesystem::exists(m_carpeta / "a"));
    m_escena.DescargarImagen(1, 0, 1, 1);
    EXPECT_EQ(m_escena.m_Texturas.size(), 1u);
    EXPECT_TRUE(std::filesystem::exists(m_carpeta / "c")) << "it wasn't to go";
    m_escena.DescargarImagen(7, 1, 1, 1);
    EXPECT_EQ(m_escena.m_Texturas.size(), 1u);
}

TEST_F(Texturas, WithoutItsContextASceneForgetsTheObjects) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    const std::shared_ptr<CTexturasGL> texturas = m_escena.m_Texturas[0].m_pTexturas;
    m_escena.Destruir();
    EXPECT_TRUE(texturas->nombres.empty());
    EXPECT_EQ(m_escena.m_Texturas.at(0).m_pTexturas, nullptr);
    EXPECT_TRUE(m_escena.m_Texturas[0].TieneFichero());
    m_escena.SetTipo(1);
    ASSERT_EQ(Crea(m_escena, m_tela), 1);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    EXPECT_TRUE(m_escena.Textura(0, 1, 1)) << "the next context has objects of its own";
    EXPECT_NE(m_escena.m_Texturas[0].IdTextura(0, 0), 0u);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Texturas, AtItsEndASceneLeavesNoFileAndNoObject) {
    auto escena = std::make_unique<EscenaImagen>();
    Tela tela(16, 16);
    ASSERT_EQ(Crea(*escena, tela), 1);
    ASSERT_EQ(
        escena->CargarFicheroTexturasTemp({kDosPorDos.Escribe(m_carpeta, "a"), kDosPorDos.Escribe(m_carpeta, "b")}), 1);
    const auto a = Nombres(escena->m_Texturas[0]), b = Nombres(escena->m_Texturas[1]);
    escena->DescargarImagen(1, 0, 0, 1);
    EXPECT_EQ(Borradas([&] { escena.reset(); }), std::vector<std::vector<double>>{a});
    EXPECT_EQ(Ficheros(), 0u) << "that of an unloaded record neither";
}

// ---- Cutting -------------------------------------------------------------------------------------------------------

TEST_F(Texturas, ACutImageIsNamedAndLoadedAtLevelTwo) {
    ASSERT_EQ(CargaImagen(m_escena), 1);
    const CDataTexturas& r = m_escena.m_Texturas.at(0);
    EXPECT_EQ(r.m_sNombreImagen, L"orto.tif");
    EXPECT_TRUE(r.EstaDisponible());
    EXPECT_EQ(r.m_sNombreFichero, r.m_pFichero->GetFilePath());
    EXPECT_EQ(m_escena.m_Asignadas, (Pasos{{0, 2}}));
    ASSERT_EQ(CargaImagen(m_escena, L"second"), 1);
    EXPECT_EQ(m_escena.m_Texturas[0].m_sNombreImagen, L"orto.tif");
    EXPECT_EQ(m_escena.m_Texturas[1].m_sNombreImagen, L"second");
}

TEST_F(Texturas, AfterACancelNoOtherRecordTakesTheName) {
    ASSERT_EQ(CargaImagen(m_escena), 1);
    m_escena.m_bCancelada = true;
    EXPECT_EQ(CargaImagen(m_escena, L"cancelled"), 1);
    EXPECT_EQ(m_escena.m_Texturas.size(), 1u);
    EXPECT_EQ(m_escena.m_Texturas[0].m_sNombreImagen, L"orto.tif");
}

TEST_F(Texturas, ACutThatFailsGivesZero) {
    m_escena.m_nResultado = 0;
    EXPECT_EQ(CargaImagen(m_escena), 0);
    Vertiz::CDataImagen imagen;
    EXPECT_EQ(m_escena.CargarImagen(L"none", nullptr, imagen, {}, Carpeta()), 0);
    EXPECT_FALSE(m_escena.HayTexturas());
}

TEST_F(Texturas, ARecordThatCannotBeTiedLosesItsFile) {
    m_escena.m_nFallaEn = 0;
    EXPECT_EQ(CargaImagen(m_escena), 0);
    EXPECT_EQ(m_escena.m_Texturas.size(), 1u) << "the record stays";
    EXPECT_FALSE(m_escena.m_Texturas[0].TieneFichero());
    EXPECT_EQ(Ficheros(), 0u);
    auto* fichero = new CFile(Ancha(m_carpeta / "x"), CFile::modeCreate | CFile::modeReadWrite);
    EXPECT_EQ(m_escena.CargarImagen(fichero, 9, 0), 0);
    EXPECT_EQ(Ficheros(), 0u) << "out of range too";
    EXPECT_EQ(m_escena.CargarImagen(nullptr, 0, 0), 0);
}

TEST_F(Texturas, RecordsAreTiedAnewInTheirOrderUntilOneFails) {
    EXPECT_EQ(m_escena.RecargarTexturas(5), 1) << "also without any";
    EXPECT_EQ(m_escena.m_Asignadas, (Pasos{{-1, 5}}));
    m_escena.SetDataTexturas(std::vector<CDataTexturas>(3));
    m_escena.m_Asignadas.clear();
    EXPECT_EQ(m_escena.RecargarTexturas(4), 1);
    EXPECT_EQ(m_escena.m_Asignadas, (Pasos{{-1, 4}, {0, 4}, {1, 4}, {2, 4}}));
    m_escena.m_Asignadas.clear();
    m_escena.m_nFallaEn = 1;
    EXPECT_EQ(m_escena.RecargarTexturas(4), 0);
    EXPECT_EQ(m_escena.m_Asignadas, (Pasos{{-1, 4}, {0, 4}, {1, 4}}));
    EXPECT_EQ(m_escena.RecargarImagen(1, 0), 0);
    EXPECT_EQ(m_escena.RecargarImagen(2, 0), 1);
}

// ---- The file of a record ------------------------------------------------------------------------------------------

TEST_F(Texturas, ReadyTilesAreWrittenToAFreshFile) {
    m_escena.SetDataTexturas({kDosPorDos.Registro()});
    const std::string bytes = kDosPorDos.Fichero();
    ASSERT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 0, Carpeta()), 1);
    const CDataTexturas& r = m_escena.m_Texturas[0];
    EXPECT_TRUE(r.EstaDisponible());
    EXPECT_EQ(Contenido(r.m_sNombreFichero), bytes);
    EXPECT_EQ(CarpetaRuta(r.m_sNombreFichero), Carpeta());
    EXPECT_EQ(Ficheros(), 1u);
}

TEST_F(Texturas, AnotherFileForARecordTakesThePlaceOfTheFirst) {
    m_escena.SetDataTexturas({kDosPorDos.Registro()});
    const std::string bytes = kDosPorDos.Fichero();
    ASSERT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 0, Carpeta()), 1);
    const CString primero = m_escena.GetFicheroTexturasTemp(0);
    const auto nombres = Nombres(m_escena.m_Texturas[0]);
    const auto borradas =
        Borradas([&] { ASSERT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 0, Carpeta()), 1); });
    EXPECT_EQ(borradas, std::vector<std::vector<double>>{nombres});
    EXPECT_NE(m_escena.GetFicheroTexturasTemp(0), primero);
    EXPECT_EQ(Ficheros(), 1u);
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(m_escena.m_Texturas[0].m_pFichero.get(), 0), 0 * Ficheros() + 1);
}

TEST_F(Texturas, AFileGetsTheLengthOfAllItsTiles) {
    m_escena.SetDataTexturas({kDosPorDos.Registro()});
    ASSERT_EQ(m_escena.GrabaFicheroTexturas("abc", 3, 0, Carpeta()), 1);
    const std::string hay = Contenido(m_escena.GetFicheroTexturasTemp(0));
    EXPECT_EQ(hay.size(), kDosPorDos.Fichero().size());
    EXPECT_TRUE(hay.starts_with("abc"));
}

TEST_F(Texturas, ReadyTilesWithoutRoomOrFolderLeaveNoFile) {
    m_escena.SetDataTexturas({kDosPorDos.Registro()});
    const std::string bytes = kDosPorDos.Fichero();
    {
        const DiscoLleno lleno(100);
        EXPECT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 0, Carpeta()), 0);
    }
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 0, Ancha(m_carpeta / "none")), 0);
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), int(bytes.size()), 1, Carpeta()), 0) << "out of range";
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(nullptr, 10, 0, Carpeta()), 0);
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(bytes.data(), -1, 0, Carpeta()), 0);
    EXPECT_EQ(Ficheros(), 0u);
    EXPECT_FALSE(m_escena.m_Texturas[0].TieneFichero());
}

TEST_F(Texturas, OutOfRangeAFileStaysItsCallers) {
    CFile fichero(Ancha(m_carpeta / "x"), CFile::modeCreate | CFile::modeReadWrite);
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(&fichero, 0), 0);
    EXPECT_EQ(m_escena.GrabaFicheroTexturas(0), 0);
    EXPECT_TRUE(fichero.IsOpen());
    EXPECT_EQ(Ficheros(), 1u);
}

TEST_F(Texturas, WithoutAContextARecordHasItsFileAllTheSame) {
    EscenaImagen sola;
    sola.SetDataTexturas({kDosPorDos.Registro()});
    EXPECT_EQ(sola.GrabaFicheroTexturas("abc", 3, 0, Carpeta()), 0);
    EXPECT_TRUE(sola.m_Texturas[0].TieneFichero());
    EXPECT_EQ(Ficheros(), 1u);
}

// ---- What a host reads ---------------------------------------------------------------------------------------------

TEST_F(Texturas, RecordsAreCopiedOutWithoutFileAndObjects) {
    ASSERT_EQ(Carga(m_escena, kDosPorDos), 1);
    CDataTexturas uno;
    std::vector<CDataTexturas> todos(5);
    ASSERT_TRUE(m_escena.GetDataTexturas(0, uno));
    m_escena.GetDataTexturas(todos);
    ASSERT_EQ(todos.size(), 1u);
    for (const CDataTexturas& r : {uno, todos[0]}) {
        EXPECT_EQ(r.m_nNumCols, 2);
        EXPECT_EQ(r.m_sNombreFichero, m_escena.m_Texturas[0].m_sNombreFichero);
        EXPECT_EQ(r.m_pFichero, nullptr);
        EXPECT_EQ(r.m_pTexturas, nullptr);
    }
    uno.m_nNumCols = 77;
    EXPECT_FALSE(m_escena.GetDataTexturas(1, uno));
    EXPECT_EQ(uno.m_nNumCols, 77);
    EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible());
}

TEST_F(Texturas, TrianglesOfATileAreCountedWithinRange) {
    CDataTexturas r = kDosPorDos.Registro();
    r.m_TriangulosTextura = {{1}, {}, {2, 3}};
    m_escena.SetDataTexturas({r, kDosPorDos.Registro()});
    EXPECT_EQ(m_escena.TriangulosTextura(0, 0, 0), 1u);
    EXPECT_EQ(m_escena.TriangulosTextura(0, 0, 1), 0u);
    EXPECT_EQ(m_escena.TriangulosTextura(0, 1, 0), 2u);
    EXPECT_EQ(m_escena.TriangulosTextura(0, 1, 1), 0u);
    EXPECT_EQ(m_escena.TriangulosTextura(0, 2, 0), 0u);
    EXPECT_EQ(m_escena.TriangulosTextura(1, 1, 0), 0u) << "a grid has none";
    EXPECT_EQ(m_escena.TriangulosTextura(2, 0, 0), 0u);
}

}  // namespace
