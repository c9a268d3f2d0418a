CREATE TABLE CLIENTES (CVE TEXT PRIMARY KEY, NOMBRE TEXT, RFC TEXT, ZONA TEXT);
INSERT INTO CLIENTES VALUES
  ('         1', 'Abarrotes y Vinos Peña Núñez, S.A. de C.V.', 'AVP010203AB4', 'CENTRO'),
  ('         2', 'O''Farrill y Compañía', 'OFC950817QK2', 'NORTE'),
  ('         3', 'Ferretería "El Águila"', 'FEA880101J31', 'NORTE'),
  ('         4', 'Descuentos al 50% / Liquidaciones', 'DCL120630TT9', 'SUR'),
  ('         5', 'Público en general', 'XAXX010101000', 'CENTRO');
CREATE TABLE PRODUCTOS (CVE_ART TEXT PRIMARY KEY, DESCR TEXT, LINEA TEXT);
INSERT INTO PRODUCTOS VALUES
  ('ESC-160', 'Escritorio de encino', 'MUEBLES'),
  ('CAF-001', 'Café de Coatepec 100% arábica', 'ALIMENTOS'),
  ('TOR-3/8', 'Tornillo de 3/8"', 'FERRETERÍA');
CREATE TABLE FACTF01 (CVE_DOC TEXT PRIMARY KEY, CVE_CLPV TEXT, CVE_ART TEXT, FECHA TEXT, IMPORTE REAL, STATUS TEXT);
INSERT INTO FACTF01 VALUES
  ('FAC00000120', '         1', 'ESC-160', '2024-04-02', 9199.80, 'E'),
  ('FAC00000121', '         1', 'CAF-001', '2024-04-18', 2944.20, 'E'),
  ('FAC00000122', '         2', 'TOR-3/8', '2024-05-03', 150.25, 'E'),
  ('FAC00000123', '         2', 'ESC-160', '2024-05-04', 4599.90, 'E'),
  ('FAC00000124', '         3', 'TOR-3/8', '2024-05-09', 1310.00, 'C'),
  ('FAC00000125', '         3', 'TOR-3/8', '2024-05-11', 620.75, 'E'),
  ('FAC00000126', '         4', 'CAF-001', '2024-05-13', 735.00, 'E'),
  ('FAC00000127', '         1', 'CAF-001', '2024-05-15', 25000.00, 'E');
CREATE TABLE FACTV01 (CVE_DOC TEXT PRIMARY KEY, CVE_CLPV TEXT, FECHA TEXT, IMPORTE REAL);
INSERT INTO FACTV01 VALUES
  ('NV00000031', '         5', '2024-05-12', 88.50),
  ('NV00000032', '         4', '2024-05-14', 1240.00);
