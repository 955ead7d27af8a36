// Images over a grid: the layout of their tiles, their records, and everything that can go wrong.

#include "Drapeado.h"
#include "support/DiscoLleno.h"
#include "support/Progreso.h"

#include <cmath>
#include <limits>
#include <random>

namespace {

using modelos::Rejilla;

/// A grid of 40 x 40 cells of 10, its south-west corner at (1000, 2000), north-west at (1000, 2400).
class TexturasRejilla : public Drapeado {
  protected:
    void SetUp() override {
        m_dem = Rejilla(41, 41, [](int r, int c) { return float(r + c); }, {.oeste = 1000, .sur = 2000});
        Toma(m_dem);
    }
    /// Lays tiles over an image of this grid's.
    CDataTexturas Dispone(int filas, int columnas, double resolucion, int tesela, bool* cambiado = nullptr) {
        CDataTexturas r;
        r.m_dSizePixel = resolucion;
        r.m_nAltoTextura = r.m_nAnchoTextura = tesela;
        const bool c = m_escena.SetNumFilasCols(r.m_nAltoTextura, r.m_nAnchoTextura, filas, columnas, r);
        if (cambiado) *cambiado = c;
        return r;
    }
    /// An image over the grid's north-west.
    static Carga Normal() { return {.oeste = 1000, .norte = 2400}; }
    /// The scene as a host goes on with it.
    void CompruebaQueDibuja() {
        EXPECT_EQ(m_escena.Iniciar(), 1);
        EXPECT_EQ(m_escena.Resize(120, 90), 1);
        EXPECT_EQ(m_escena.Render(), 1);
    }
    Vertiz::CDEM m_dem;
};

// ---- Layout --------------------------------------------------------------------------------------------------------

TEST_F(TexturasRejilla, TilesHoldWholeCells) {
    const CDataTexturas r = Dispone(1100, 2000, 0.7, 1024);
    // 14.29 pixels a cell. Tiles of 1024 and 512 would waste too much of 1100; 256 hold 17 cells: 242.9 pixels.
    EXPECT_EQ(r.m_nAltoTextura, 256);
    EXPECT_EQ(r.m_nCeldasFila, 17);
    EXPECT_EQ(r.m_nCeldasCol, 17);
    EXPECT_EQ(r.m_nAltoUtil, 242);
    EXPECT_EQ(r.m_nAnchoUtil, 242);
    EXPECT_EQ(r.m_nNumFilas, 5);
    EXPECT_EQ(r.m_nNumCols, 9);
}

TEST_F(TexturasRejilla, UsefulPixelsAreCutOff) {
    // 3.33 pixels a cell: 64 hold 19 cells, 63.33 pixels.
    const CDataTexturas r = Dispone(64, 64, 3, 64);
    EXPECT_EQ(r.m_nCeldasCol, 19);
    EXPECT_EQ(r.m_nAnchoUtil, 63);
    EXPECT_EQ(r.m_nNumCols, 2) << "63 pixels don't hold 64";
}

TEST_F(TexturasRejilla, CellsThatAreNotSquareHaveTheirOwnCounts) {
    ASSERT_TRUE(m_dem.SetCelda(10, 5));
    const CDataTexturas r = Dispone(64, 64, 1, 64);
    EXPECT_EQ(r.m_nCeldasCol, 6);
    EXPECT_EQ(r.m_nCeldasFila, 12);
    EXPECT_EQ(r.m_nAnchoUtil, 60);
    EXPECT_EQ(r.m_nAltoUtil, 60);
}

TEST_F(TexturasRejilla, ASmallImageTakesSmallTilesAndACellLargerThanATileMakesThemGrow) {
    m_escena.SetMaxTexDim(1024);
    bool cambiado = false;
    CDataTexturas r = Dispone(100, 100, 1, 1024, &cambiado);
    EXPECT_TRUE(cambiado);
    EXPECT_EQ(r.m_nAltoTextura, 128);
    // 200 pixels a cell: 128 are too few, and 256 hold one.
    r = Dispone(100, 100, 0.05, 1024);
    EXPECT_EQ(r.m_nAltoTextura, 256);
    EXPECT_EQ(r.m_nCeldasFila, 1);
    EXPECT_EQ(r.m_nAltoUtil, 200);
    EXPECT_EQ(r.m_nNumFilas, 1);
    EXPECT_EQ(r.m_nNumCols, 1);
    Dispone(256, 256, 1, 256, &cambiado);
    EXPECT_FALSE(cambiado);
}

TEST_F(TexturasRejilla, RowsAndColumnsGrowUntilTheImageIsCovered) {
    // 26 pixels of 32 are used: what three tiles of 32 hold takes four.
    const CDataTexturas r = Dispone(94, 94, 10.0 / 26, 32);
    EXPECT_EQ(r.m_nAltoUtil, 26);
    EXPECT_EQ(r.m_nNumFilas, 4);
    // 9 of 16, over a long image: twice as many as the layout without cells takes.
    const CDataTexturas larga = Dispone(160, 160, 10.0 / 9, 16);
    EXPECT_EQ(larga.m_nAltoUtil, 9);
    EXPECT_EQ(larga.m_nNumFilas, 18);
    EXPECT_GE(larga.m_nNumCols * larga.m_nAnchoUtil, 160);
}

TEST_F(TexturasRejilla, DecimalsThatBinaryNumbersDoNotHoldAreTheNumbersThatTheyMean) {
    ASSERT_TRUE(m_dem.SetCelda(0.3, 0.3));
    ASSERT_LT(0.3 / 0.1, 3.0);
    const CDataTexturas r = Dispone(60, 60, 0.1, 64);
    EXPECT_EQ(r.m_nCeldasCol, 21);
    EXPECT_EQ(r.m_nAnchoUtil, 63);
    // And an image that begins at a line of such a grid has no cell of white beside it.
    m_dem.SetOrigen(0.7, 0.7);
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(30, 30, Abigarrado),
                     {.oeste = 0.7 + 3 * 0.3, .norte = 0.7 + 30 * 0.3, .pixel = 0.1, .resolucion = 0.1}),
              1);
    EXPECT_EQ(Registro().m_nDespCol, -3);
}

TEST_F(TexturasRejilla, WithoutGridOrSizesThereIsNoLayoutAndNoEnd) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    for (const double resolucion : {0.0, -1.0, nan, inf, -inf}) {
        EXPECT_EQ(Dispone(100, 100, resolucion, 64).NumTeselas(), 0u) << resolucion;
        EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.oeste = 1000, .norte = 2400, .resolucion = resolucion}), 0);
        EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.oeste = 1000, .norte = 2400, .pixel = resolucion}), 0);
    }
    for (const double lugar : {nan, inf, -inf}) {
        EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.oeste = lugar}), 0);
        EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.norte = lugar}), 0);
    }
    EXPECT_EQ(Dispone(0, 100, 1, 64).NumTeselas(), 0u);
    EXPECT_EQ(Dispone(100, 0, 1, 64).NumTeselas(), 0u);
    EXPECT_EQ(Dispone(100, 100, 1, 0).NumTeselas(), 0u);
    m_escena.SetMaxTexDim(0);
    EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), Normal()), 0);
    m_escena.SetMaxTexDim(64);
    EXPECT_EQ(Drapea(Vertiz::CBmp(), Normal()), 0) << "no pixels";
    // A cell of 100 pixels doesn't fit in a texture of 64; one of 10 000 000 doesn't in any.
    EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.oeste = 1000, .norte = 2400, .resolucion = 0.1}), 0);
    EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.oeste = 1000, .norte = 2400, .resolucion = 1e-6}), 0);
    EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), {.oeste = 1000, .norte = 2400, .resolucion = 1e-300}), 0);
    EXPECT_EQ(CuentaRegistros(), 0u);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
    m_escena.SetDEM(nullptr);
    EXPECT_EQ(Dispone(100, 100, 1, 64).NumTeselas(), 0u);
    EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), Normal()), 0);
    m_escena.SetDEM(&m_dem);
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, APixelAsLargeAsTheGridAndLargerIsDraped) {
    for (const double pixel : {33.0, 400.0, 1e6}) {
        ASSERT_EQ(Drapea(*Pinta(1, 1, Abigarrado), {.oeste = 1000, .norte = 2400, .pixel = pixel, .resolucion = pixel}),
                  1)
            << pixel;
        const CDataTexturas r = Registro();
        EXPECT_EQ(r.NumTeselas(), 1u);
        EXPECT_EQ(r.m_nAnchoUtil, 1);
        EXPECT_EQ(Fichero(), (std::vector<BYTE>{17, 101, 200, 255})) << "a pixel, in a row padded to four";
        CompruebaQueDibuja();
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

TEST_F(TexturasRejilla, TilesAreNeverLargerThanOpenGLTakes) {
    m_escena.SetMaxTexDim(100);
    ASSERT_EQ(Drapea(*Pinta(300, 300, Abigarrado), Normal()), 1);
    EXPECT_EQ(Registro().m_nAnchoTextura, 64);
}

TEST_F(TexturasRejilla, ACellListTakesNoImage) {
    Vertiz::CDEM lista = modelos::ListaCeldas({{1, 2}, {3, 4}});
    m_escena.SetDEM(&lista);
    EXPECT_EQ(Drapea(*Pinta(9, 9, Abigarrado), Normal()), 0);
    EXPECT_EQ(CuentaRegistros(), 0u);
    m_escena.SetDEM(&m_dem);
}

// ---- Records -------------------------------------------------------------------------------------------------------

TEST_F(TexturasRejilla, ARecordCountsPixelsOfTheTexture) {
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(101, 63, Abigarrado), {.oeste = 1000, .norte = 2400, .resolucion = 2, .piramide = 1}), 1);
    const CDataTexturas r = Registro();
    EXPECT_EQ(r.m_nAnchoImagen, 51);
    EXPECT_EQ(r.m_nAltoImagen, 32);
    EXPECT_EQ(r.m_dSizePixel, 2);
    EXPECT_EQ(r.m_bPiramidales, 1);
    EXPECT_EQ(r.m_nSizeTextura, r.m_nAnchoTextura * r.m_nAltoTextura * 3);
    EXPECT_EQ(r.m_nSizeNivel0, std::int64_t(r.m_nSizeTextura) * r.m_nNumFilas * r.m_nNumCols);
    EXPECT_EQ(r.m_bCargada, 0);
    EXPECT_TRUE(r.m_sNombreFichero.Utf8().find("Texturas") != std::string::npos);
}

TEST_F(TexturasRejilla, LocalCoordinatesAreThoseWithoutTheSeed) {
    m_dem.Semilla() = Vertiz::CDataSemilla(2, 900, 1800);
    Tesela(64);
    ASSERT_EQ(
        Drapea(*Pinta(60, 60, Abigarrado), {.oeste = 100 + 50, .norte = 600 - 20, .tipo = Vertiz::CDataImagen::LOCAL}),
        1);
    EXPECT_EQ(Registro().m_nDespCol, -5);
    EXPECT_EQ(Registro().m_dOrigenX, 1050);
    EXPECT_EQ(Registro().m_dOrigenY, 2400 - 20 - 60);
}

TEST_F(TexturasRejilla, TheImagesNameIsKept) {
    Vertiz::CDataImagen imagen(1000, 2400, 1, 1, Vertiz::CDataImagen::ABSOLUTA);
    CDataCargarImagen opciones;
    opciones.m_dResolucion = 1;
    CEscenaMDT& escena = m_escena;
    EXPECT_EQ(escena.CargarImagen(L"vuelo de 1956", Pinta(9, 9, Abigarrado).release(), imagen, opciones, Carpeta()), 1);
    EXPECT_EQ(Registro().m_sNombreImagen, CString(L"vuelo de 1956"));
}

TEST_F(TexturasRejilla, FilesLoadedAgainLieWhereTheyWereCutFor) {
    // Places, sizes and resolutions: what the file's place alone tells is what cutting it had settled.
    std::mt19937 azar(7);
    const auto entre = [&](int a, int b) { return std::uniform_int_distribution(a, b)(azar); };
    Tesela(32);
    for (int vez = 0; vez < 60; ++vez) {
        const double resolucion = vez % 2 ? 1 : 2;
        ASSERT_EQ(
            Drapea(*Pinta(entre(20, 120), entre(20, 120), Abigarrado),
                   {.oeste = 1000.0 + entre(-90, 200), .norte = 2400.0 + entre(-200, 90), .resolucion = resolucion}),
            1);
        const CDataTexturas antes = Registro();
        std::vector<CDataTexturas> registros;
        m_escena.GetDataTexturas(registros);
        m_escena.DescargarImagen(0, 0, 1, 1);
        ASSERT_EQ(m_escena.CargarFicheroTexturasTemp(registros), 1);
        const CDataTexturas despues = Registro();
        EXPECT_EQ(despues.m_nCeldasFila, antes.m_nCeldasFila);
        EXPECT_EQ(despues.m_nCeldasCol, antes.m_nCeldasCol);
        EXPECT_EQ(despues.m_nDespFila, antes.m_nDespFila) << vez;
        EXPECT_EQ(despues.m_nDespCol, antes.m_nDespCol) << vez;
        EXPECT_EQ(despues.m_ZonasLibres, antes.m_ZonasLibres) << vez;
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

TEST_F(TexturasRejilla, FilesFindTheirPlaceOnAnotherGrid) {
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(120, 120, Abigarrado), {.oeste = 1100, .norte = 2300}), 1);
    std::vector<CDataTexturas> registros;
    m_escena.GetDataTexturas(registros);
    m_escena.DescargarImagen(0, 0, 1, 1);
    // Cells of 20, beginning 40 further west and reaching 100 further north.
    Vertiz::CDEM otra =
        Rejilla(26, 26, [](int, int) { return 1.0F; }, {.celdaX = 20, .celdaY = 20, .oeste = 960, .sur = 2000});
    m_escena.SetDEM(&otra);
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp(registros), 1);
    const CDataTexturas r = Registro();
    EXPECT_EQ(r.m_nCeldasCol, 3) << "60 pixels";
    EXPECT_EQ(r.m_nCeldasFila, 3);
    EXPECT_EQ(r.m_nDespCol, -7);
    EXPECT_EQ(r.m_nDespFila, -(2500 - 2300) / 20);
    m_escena.SetDEM(nullptr);
    EXPECT_EQ(m_escena.CargarFicheroTexturasTemp(registros), 0) << "no grid";
    m_escena.SetDEM(&m_dem);
}

TEST_F(TexturasRejilla, AFileThatIsGoneCanNotBeLoaded) {
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), Normal()), 1);
    std::vector<CDataTexturas> registros;
    m_escena.GetDataTexturas(registros);
    m_escena.DescargarImagen(0, 1, 1, 1);
    EXPECT_EQ(m_escena.CargarFicheroTexturasTemp(registros), 0);
    m_escena.MakeCurrent(nullptr);
    CompruebaQueDibuja();
}

// ---- What goes wrong -----------------------------------------------------------------------------------------------

TEST_F(TexturasRejilla, CancellingAtAnyStepLeavesNothing) {
    const Carga carga{.oeste = 1000, .norte = 2400, .piramide = 1};
    Tesela(16);
    int pasos = 0;
    {
        const Progreso entero;
        ASSERT_EQ(Drapea(*Pinta(40, 40, Abigarrado), carga), 1);
        pasos = int(entero.m_Pasos.size());
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
    ASSERT_GT(pasos, 100);
    for (int paso = 1; paso <= pasos; paso += 1 + paso / 10) {
        const Progreso progreso(paso);
        EXPECT_EQ(Drapea(*Pinta(40, 40, Abigarrado, paso % 2), carga), 1) << paso;
        EXPECT_EQ(int(progreso.m_Pasos.size()), paso) << "nothing goes on after it";
        EXPECT_EQ(progreso.m_nAbiertas, 0);
        EXPECT_EQ(CuentaRegistros(), 0u) << paso;
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u) << paso;
    }
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, AnImageThatCanNotBeHalvedIsAFailureUnlessTheUserCancelled) {
    struct SinMitad : Vertiz::CBmp {
        int resultado = 0;
        int Reducir(int, int) override { return resultado; }
    };
    const auto drapea = [&](int resultado) {
        SinMitad raster;
        EXPECT_TRUE(raster.Crear(9, 9, 24, 100.0F, false, nullptr, nullptr, false));
        raster.resultado = resultado;
        const int r = Drapea(raster, {.oeste = 1000, .norte = 2400, .piramide = 1});
        EXPECT_EQ(CuentaRegistros(), 0u) << resultado;
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u) << resultado;
        return r;
    };
    for (const int resultado : {0, 2, 15103})
        EXPECT_EQ(drapea(resultado), 0) << resultado << ", and nobody could cancel";
    const Progreso progreso;
    EXPECT_EQ(drapea(2), 1);
    EXPECT_EQ(drapea(15103), 0);
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, WithoutAFolderThereIsNoImage) {
    const std::size_t descriptores = CuentaDescriptores();
    Vertiz::CDataImagen imagen(1000, 2400, 1, 1, Vertiz::CDataImagen::ABSOLUTA);
    CDataCargarImagen opciones;
    opciones.m_dResolucion = 1;
    const auto raster = Pinta(9, 9, Abigarrado);
    CEscenaMDT& escena = m_escena;
    EXPECT_EQ(escena.CargarImagen(raster.get(), imagen, opciones, Carpeta() + L"/no/hay", 2), 0);
    EXPECT_EQ(escena.CargarImagen(nullptr, imagen, opciones, Carpeta(), 2), 0);
    EXPECT_EQ(CuentaRegistros(), 0u);
    EXPECT_EQ(CuentaDescriptores(), descriptores);
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, WithoutRoomOnTheDiskThereIsNoImageAndNoFile) {
    const auto raster = Pinta(200, 200, Abigarrado);
    Tesela(64);
    for (const rlim_t bytes : {rlim_t(0), rlim_t(64 * 64 * 3), rlim_t(15 * 64 * 64 * 3 + 7)}) {
        const DiscoLleno lleno(bytes);
        const Progreso progreso;
        EXPECT_EQ(Drapea(*raster, Normal()), 0) << bytes;
        // 60 rows for each tile: it ends with the first that isn't taken.
        EXPECT_EQ(progreso.m_Pasos.size(), 60 * (bytes / (64 * 64 * 3) + 1)) << bytes;
        EXPECT_EQ(CuentaRegistros(), 0u);
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u) << bytes;
    }
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, TheEndOfTheFileNeedsRoomAlsoWhereItIsAHole) {
    // The second tile gets nothing of the image; the first fits.
    Tesela(16);
    const DiscoLleno lleno(16 * 16 * 3);
    EXPECT_EQ(Drapea(*Pinta(11, 10, Abigarrado), {.oeste = 995, .norte = 2400}), 0);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
}

TEST_F(TexturasRejilla, WithoutAContextThereIsNoImageAndOtherBandsAreWhole) {
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), {.oeste = 1000, .norte = 2400}), 1);
    const auto zonas = Registro().m_ZonasLibres;
    const FallaGL falla("glGenTextures", 1);
    EXPECT_EQ(Drapea(*Pinta(60, 60, Abigarrado), {.oeste = 1200, .norte = 2200}), 0);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_EQ(CuentaRegistros(), 1u);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
    EXPECT_EQ(Registro().m_ZonasLibres, zonas);
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, AnImageBesideTheTerrainIsKeptAndTheTerrainStays) {
    Tesela(64);
    for (const auto& [oeste, norte] : {std::pair{5000.0, 2400.0},
                                       {-5000.0, 2400.0},
                                       {1000.0, 9000.0},
                                       {1000.0, -500.0},
                                       {1e300, 2400.0},
                                       {1000.0, -1e300}}) {
        ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), {.oeste = oeste, .norte = norte}), 1);
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciar(), 1);
        EXPECT_EQ(registro.Numeros("glArrayElement").size(), 40u * 40 * 4) << oeste << ", " << norte;
        EXPECT_EQ(registro.Cuenta("glTexCoord2d"), 0u);
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

// ---- Ready tiles ---------------------------------------------------------------------------------------------------

TEST_F(TexturasRejilla, ReadyTilesGoToTheRecordBehindTheOneThatIsRemoved) {
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), Normal()), 1);
    ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), {.oeste = 1100, .norte = 2300}), 1);
    std::string datos(2 * 4 * 4 * 3, '\0');
    for (std::size_t i = 0; i < datos.size(); ++i)
        datos[i] = char(i);
    m_escena.SetTexturas(datos.data(), 4, 4, 48, 96, 2, 1, 3, 5, -6, -7, 0, Carpeta());
    ASSERT_EQ(CuentaRegistros(), 1u);
    const CDataTexturas r = Registro();
    EXPECT_EQ(r.m_nAnchoTextura, 4);
    EXPECT_EQ(r.m_nAltoTextura, 4);
    EXPECT_EQ(r.m_nSizeTextura, 48);
    EXPECT_EQ(r.m_nSizeNivel0, 96);
    EXPECT_EQ(r.m_nNumFilas, 2);
    EXPECT_EQ(r.m_nNumCols, 1);
    EXPECT_EQ(r.m_nCeldasFila, 3);
    EXPECT_EQ(r.m_nCeldasCol, 5);
    EXPECT_EQ(r.m_nDespCol, -6);
    EXPECT_EQ(r.m_nDespFila, -7);
    EXPECT_EQ(Fichero(), std::vector<BYTE>(datos.begin(), datos.end()));
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u) << "the files of both images are gone";
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, ReadyTilesWithoutARecordBehindOrWithoutDataAreNotTaken) {
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), Normal()), 1);
    m_escena.SetTexturas(nullptr, 4, 4, 48, 96, 2, 1, 3, 5, 0, 0, 0, Carpeta());
    EXPECT_EQ(CuentaRegistros(), 1u);
    const std::string datos(96, 'x');
    m_escena.SetTexturas(datos.data(), 4, 4, 48, 96, 2, 1, 3, 5, 0, 0, 7, Carpeta());
    EXPECT_EQ(CuentaRegistros(), 1u);
    m_escena.SetTexturas(datos.data(), 4, 4, 48, 96, 2, 1, 3, 5, 0, 0, 0, Carpeta());
    EXPECT_EQ(CuentaRegistros(), 0u) << "the record is removed before there is none to write to";
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
    CompruebaQueDibuja();
}

TEST_F(TexturasRejilla, ReadyTilesWithoutRoomLeaveARecordWithoutAFile) {
    Tesela(64);
    const std::string datos(96, 'x');
    for (const bool carpeta : {false, true}) {
        ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), Normal()), 1);
        ASSERT_EQ(Drapea(*Pinta(60, 60, Abigarrado), Normal()), 1);
        const DiscoLleno lleno(5);
        m_escena.SetTexturas(datos.data(), 4, 4, 48, 96, 2, 1, 3, 5, 0, 0, 0,
                             carpeta ? Carpeta() : Carpeta() + L"/no/hay");
        EXPECT_EQ(CuentaRegistros(), 1u);
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
        CompruebaQueDibuja();
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

}  // namespace
