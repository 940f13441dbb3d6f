; Named coordinate systems that come with an installation. An update replaces this file: put systems of your own, and
; changes to these, in a file of the same name in the system folder. See docs/formats/coordinate-systems.md.
;
; [Units]          unit name = metres per unit, mnemonic
; [Renamed]        old group/old name = group/name
; [Group]          items that all systems of the group share
; [Group/System]   one system; <zone> in its name makes it a series, with Zones=first-last

[Units]
Meters=1,m
International Feet=0.3048,ft
U.S. Survey Feet=0.3048006096012192,ft
Kilometers=1000,km
International Yards=0.9144,yd
International Nautical Miles=1852,nm

[Renamed]
Mercator/WGS84 - Mercator=Mercator/WGS 84 - Mercator
Mercator/WGS84 Mercator=Mercator/WGS 84 - Mercator
Netherlands/RD New=Netherlands/RD New - NAP 2018
Netherlands/RD=Netherlands/RD New - NAP 2008
Belgium/Belgian Lambert 72=Belgium/Lambert 72
United Kingdom/National Grid=United Kingdom/British National Grid

[Mercator]
Base=EPSG:4326
Ellipsoid=WGS 84
Transformation=None
Unit=Meters

[Mercator/WGS 84 - Mercator]
Definition=EPSG:3395
Projection=World Mercator
Description=Ellipsoidal Mercator, true to scale at the equator, for small scales

[WGS 84 UTM North]
Base=EPSG:4326
Ellipsoid=WGS 84
Transformation=None
Unit=Meters

[WGS 84 UTM North/WGS 84 - UTM zone <zone>N]
Zones=1-60
Definition=EPSG:326<zone:2>
Projection=UTM zone <zone>N

[WGS 84 UTM South]
Base=EPSG:4326
Ellipsoid=WGS 84
Transformation=None
Unit=Meters

[WGS 84 UTM South/WGS 84 - UTM zone <zone>S]
Zones=1-60
Definition=EPSG:327<zone:2>
Projection=UTM zone <zone>S

[ETRS89 UTM]
Base=EPSG:4258
Ellipsoid=GRS 1980
Transformation=None
Unit=Meters

[ETRS89 UTM/ETRS89 - UTM zone <zone>N]
Zones=28-38
Definition=EPSG:258<zone:2>
Projection=UTM zone <zone>N

[NAD83 UTM]
Base=EPSG:4269
Ellipsoid=GRS 1980
Transformation=None
Unit=Meters

[NAD83 UTM/NAD83 - UTM zone <zone>N]
Zones=1-23
Definition=EPSG:269<zone:2>
Projection=UTM zone <zone>N

; The Dutch systems shift the datum with seven parameters. The official transformation adds a correction of up to
; 0.25 m from a grid file that isn't part of this definition. Positions are ETRS89.
[Netherlands]
Base=EPSG:4258
Ellipsoid=Bessel 1841
Projection=RD New (oblique stereographic)
Unit=Meters

[Netherlands/RD New - NAP 2018]
Definition=+proj=sterea +lat_0=52.1561605555556 +lon_0=5.38763888888889 +k=0.9999079 +x_0=155000 +y_0=463000 +ellps=bessel +towgs84=565.7381,50.4018,465.2904,-0.395025981036,0.330772431242,-1.876073294628,4.07244 +units=m
Register=EPSG:28992
RegisterShift=EPSG:9281
Transformation=Amersfoort to ETRS89 (8)
Description=Accuracy 0.25 m, heights above NAP as of 2018
GeoidModel=GeoidModelRDNAP2018
GeoidFile=nlgeo2018.gtx

[Netherlands/RD New - NAP 2008]
Definition=+proj=sterea +lat_0=52.1561605555556 +lon_0=5.38763888888889 +k=0.9999079 +x_0=155000 +y_0=463000 +ellps=bessel +towgs84=565.4171,50.3319,465.5524,-0.398957388243,0.343987817378,-1.87740163998,4.0725 +units=m
Register=EPSG:28992
RegisterShift=EPSG:4830
Transformation=Amersfoort to ETRS89 (5)
Description=Accuracy 0.25 m, heights above NAP as of 2008
GeoidModel=GeoidModelRDNAP2008

[Belgium]
Unit=Meters

[Belgium/Lambert 72]
Definition=+proj=lcc +lat_0=90 +lon_0=4.36748666666667 +lat_1=51.1666672333333 +lat_2=49.8333339 +x_0=150000.013 +y_0=5400088.438 +ellps=intl +towgs84=-106.8686,52.2978,-103.7239,0.3366,-0.457,1.8422,-1.2747 +units=m
Base=EPSG:4258
Register=EPSG:31370
RegisterShift=EPSG:15928
Ellipsoid=International 1924
Projection=Belgian Lambert 72
Transformation=BD72 to ETRS89 (2)
Description=Accuracy 0.2 m on land

[Belgium/Lambert 2008]
Definition=EPSG:3812
Base=EPSG:4258
Ellipsoid=GRS 1980
Projection=Belgian Lambert 2008
Transformation=None

[United Kingdom]
Base=EPSG:4326
Unit=Meters

[United Kingdom/British National Grid]
Definition=+proj=tmerc +lat_0=49 +lon_0=-2 +k=0.9996012717 +x_0=400000 +y_0=-100000 +ellps=airy +towgs84=446.448,-125.157,542.06,0.15,0.247,0.842,-20.489 +units=m
Register=EPSG:27700
RegisterShift=EPSG:1314
Ellipsoid=Airy 1830
Projection=British National Grid
Transformation=OSGB36 to WGS 84 (6)
Description=Accuracy 2 m to 5 m, without the national shift grid

[Ireland]
Base=EPSG:4173
Unit=Meters

[Ireland/Irish Transverse Mercator]
Definition=EPSG:2157
Ellipsoid=GRS 1980
Projection=Irish Transverse Mercator
Transformation=None
Description=IRENET95

[France]
Base=EPSG:4171
Unit=Meters

[France/RGF93 - Lambert-93]
Definition=EPSG:2154
Ellipsoid=GRS 1980
Projection=Lambert-93
Transformation=None

[Sweden]
Base=EPSG:4619
Unit=Meters

[Sweden/SWEREF99 TM]
Definition=EPSG:3006
Ellipsoid=GRS 1980
Projection=SWEREF99 TM
Transformation=None

[New Zealand]
Base=EPSG:4167
Unit=Meters

[New Zealand/NZGD2000 - Transverse Mercator 2000]
Definition=EPSG:2193
Ellipsoid=GRS 1980
Projection=New Zealand Transverse Mercator 2000
Transformation=None

[US State Plane - meters]
Base=EPSG:4269
Ellipsoid=GRS 1980
Transformation=None
Unit=Meters

[US State Plane - meters/NAD83 - Alabama East]
Definition=EPSG:26929

[US State Plane - meters/NAD83 - Alabama West]
Definition=EPSG:26930

[US State Plane - meters/NAD83 - Alaska zone 1]
Definition=EPSG:26931

[US State Plane - meters/NAD83 - Alaska zone 10]
Definition=EPSG:26940

[US State Plane - meters/NAD83 - Alaska zone 2]
Definition=EPSG:26932

[US State Plane - meters/NAD83 - Alaska zone 3]
Definition=EPSG:26933

[US State Plane - meters/NAD83 - Alaska zone 4]
Definition=EPSG:26934

[US State Plane - meters/NAD83 - Alaska zone 5]
Definition=EPSG:26935

[US State Plane - meters/NAD83 - Alaska zone 6]
Definition=EPSG:26936

[US State Plane - meters/NAD83 - Alaska zone 7]
Definition=EPSG:26937

[US State Plane - meters/NAD83 - Alaska zone 8]
Definition=EPSG:26938

[US State Plane - meters/NAD83 - Alaska zone 9]
Definition=EPSG:26939

[US State Plane - meters/NAD83 - Arizona Central]
Definition=EPSG:26949

[US State Plane - meters/NAD83 - Arizona East]
Definition=EPSG:26948

[US State Plane - meters/NAD83 - Arizona West]
Definition=EPSG:26950

[US State Plane - meters/NAD83 - Arkansas North]
Definition=EPSG:26951

[US State Plane - meters/NAD83 - Arkansas South]
Definition=EPSG:26952

[US State Plane - meters/NAD83 - California zone 1]
Definition=EPSG:26941

[US State Plane - meters/NAD83 - California zone 2]
Definition=EPSG:26942

[US State Plane - meters/NAD83 - California zone 3]
Definition=EPSG:26943

[US State Plane - meters/NAD83 - California zone 4]
Definition=EPSG:26944

[US State Plane - meters/NAD83 - California zone 5]
Definition=EPSG:26945

[US State Plane - meters/NAD83 - California zone 6]
Definition=EPSG:26946

[US State Plane - meters/NAD83 - Colorado Central]
Definition=EPSG:26954

[US State Plane - meters/NAD83 - Colorado North]
Definition=EPSG:26953

[US State Plane - meters/NAD83 - Colorado South]
Definition=EPSG:26955

[US State Plane - meters/NAD83 - Connecticut]
Definition=EPSG:26956

[US State Plane - meters/NAD83 - Delaware]
Definition=EPSG:26957

[US State Plane - meters/NAD83 - Florida East]
Definition=EPSG:26958

[US State Plane - meters/NAD83 - Florida North]
Definition=EPSG:26960

[US State Plane - meters/NAD83 - Florida West]
Definition=EPSG:26959

[US State Plane - meters/NAD83 - Georgia East]
Definition=EPSG:26966

[US State Plane - meters/NAD83 - Georgia West]
Definition=EPSG:26967

[US State Plane - meters/NAD83 - Hawaii zone 1]
Definition=EPSG:26961

[US State Plane - meters/NAD83 - Hawaii zone 2]
Definition=EPSG:26962

[US State Plane - meters/NAD83 - Hawaii zone 3]
Definition=EPSG:26963

[US State Plane - meters/NAD83 - Hawaii zone 4]
Definition=EPSG:26964

[US State Plane - meters/NAD83 - Hawaii zone 5]
Definition=EPSG:26965

[US State Plane - meters/NAD83 - Idaho Central]
Definition=EPSG:26969

[US State Plane - meters/NAD83 - Idaho East]
Definition=EPSG:26968

[US State Plane - meters/NAD83 - Idaho West]
Definition=EPSG:26970

[US State Plane - meters/NAD83 - Illinois East]
Definition=EPSG:26971

[US State Plane - meters/NAD83 - Illinois West]
Definition=EPSG:26972

[US State Plane - meters/NAD83 - Indiana East]
Definition=EPSG:26973

[US State Plane - meters/NAD83 - Indiana West]
Definition=EPSG:26974

[US State Plane - meters/NAD83 - Iowa North]
Definition=EPSG:26975

[US State Plane - meters/NAD83 - Iowa South]
Definition=EPSG:26976

[US State Plane - meters/NAD83 - Kansas North]
Definition=EPSG:26977

[US State Plane - meters/NAD83 - Kansas South]
Definition=EPSG:26978

[US State Plane - meters/NAD83 - Kentucky North]
Definition=EPSG:2205

[US State Plane - meters/NAD83 - Kentucky Single Zone]
Definition=EPSG:3088

[US State Plane - meters/NAD83 - Kentucky South]
Definition=EPSG:26980

[US State Plane - meters/NAD83 - Louisiana North]
Definition=EPSG:26981

[US State Plane - meters/NAD83 - Louisiana Offshore]
Definition=EPSG:32199

[US State Plane - meters/NAD83 - Louisiana South]
Definition=EPSG:26982

[US State Plane - meters/NAD83 - Maine East]
Definition=EPSG:26983

[US State Plane - meters/NAD83 - Maine West]
Definition=EPSG:26984

[US State Plane - meters/NAD83 - Maryland]
Definition=EPSG:26985

[US State Plane - meters/NAD83 - Massachusetts Island]
Definition=EPSG:26987

[US State Plane - meters/NAD83 - Massachusetts Mainland]
Definition=EPSG:26986

[US State Plane - meters/NAD83 - Michigan Central]
Definition=EPSG:26989

[US State Plane - meters/NAD83 - Michigan North]
Definition=EPSG:26988

[US State Plane - meters/NAD83 - Michigan South]
Definition=EPSG:26990

[US State Plane - meters/NAD83 - Minnesota Central]
Definition=EPSG:26992

[US State Plane - meters/NAD83 - Minnesota North]
Definition=EPSG:26991

[US State Plane - meters/NAD83 - Minnesota South]
Definition=EPSG:26993

[US State Plane - meters/NAD83 - Mississippi East]
Definition=EPSG:26994

[US State Plane - meters/NAD83 - Mississippi West]
Definition=EPSG:26995

[US State Plane - meters/NAD83 - Missouri Central]
Definition=EPSG:26997

[US State Plane - meters/NAD83 - Missouri East]
Definition=EPSG:26996

[US State Plane - meters/NAD83 - Missouri West]
Definition=EPSG:26998

[US State Plane - meters/NAD83 - Montana]
Definition=EPSG:32100

[US State Plane - meters/NAD83 - Nebraska]
Definition=EPSG:32104

[US State Plane - meters/NAD83 - Nevada Central]
Definition=EPSG:32108

[US State Plane - meters/NAD83 - Nevada East]
Definition=EPSG:32107

[US State Plane - meters/NAD83 - Nevada West]
Definition=EPSG:32109

[US State Plane - meters/NAD83 - New Hampshire]
Definition=EPSG:32110

[US State Plane - meters/NAD83 - New Jersey]
Definition=EPSG:32111

[US State Plane - meters/NAD83 - New Mexico Central]
Definition=EPSG:32113

[US State Plane - meters/NAD83 - New Mexico East]
Definition=EPSG:32112

[US State Plane - meters/NAD83 - New Mexico West]
Definition=EPSG:32114

[US State Plane - meters/NAD83 - New York Central]
Definition=EPSG:32116

[US State Plane - meters/NAD83 - New York East]
Definition=EPSG:32115

[US State Plane - meters/NAD83 - New York Long Island]
Definition=EPSG:32118

[US State Plane - meters/NAD83 - New York West]
Definition=EPSG:32117

[US State Plane - meters/NAD83 - North Carolina]
Definition=EPSG:32119

[US State Plane - meters/NAD83 - North Dakota North]
Definition=EPSG:32120

[US State Plane - meters/NAD83 - North Dakota South]
Definition=EPSG:32121

[US State Plane - meters/NAD83 - Ohio North]
Definition=EPSG:32122

[US State Plane - meters/NAD83 - Ohio South]
Definition=EPSG:32123

[US State Plane - meters/NAD83 - Oklahoma North]
Definition=EPSG:32124

[US State Plane - meters/NAD83 - Oklahoma South]
Definition=EPSG:32125

[US State Plane - meters/NAD83 - Oregon North]
Definition=EPSG:32126

[US State Plane - meters/NAD83 - Oregon South]
Definition=EPSG:32127

[US State Plane - meters/NAD83 - Pennsylvania North]
Definition=EPSG:32128

[US State Plane - meters/NAD83 - Pennsylvania South]
Definition=EPSG:32129

[US State Plane - meters/NAD83 - Puerto Rico & Virgin Is.]
Definition=EPSG:32161

[US State Plane - meters/NAD83 - Rhode Island]
Definition=EPSG:32130

[US State Plane - meters/NAD83 - South Carolina]
Definition=EPSG:32133

[US State Plane - meters/NAD83 - South Dakota North]
Definition=EPSG:32134

[US State Plane - meters/NAD83 - South Dakota South]
Definition=EPSG:32135

[US State Plane - meters/NAD83 - Tennessee]
Definition=EPSG:32136

[US State Plane - meters/NAD83 - Texas Central]
Definition=EPSG:32139

[US State Plane - meters/NAD83 - Texas North]
Definition=EPSG:32137

[US State Plane - meters/NAD83 - Texas North Central]
Definition=EPSG:32138

[US State Plane - meters/NAD83 - Texas South]
Definition=EPSG:32141

[US State Plane - meters/NAD83 - Texas South Central]
Definition=EPSG:32140

[US State Plane - meters/NAD83 - Utah Central]
Definition=EPSG:32143

[US State Plane - meters/NAD83 - Utah North]
Definition=EPSG:32142

[US State Plane - meters/NAD83 - Utah South]
Definition=EPSG:32144

[US State Plane - meters/NAD83 - Vermont]
Definition=EPSG:32145

[US State Plane - meters/NAD83 - Virginia North]
Definition=EPSG:32146

[US State Plane - meters/NAD83 - Virginia South]
Definition=EPSG:32147

[US State Plane - meters/NAD83 - Washington North]
Definition=EPSG:32148

[US State Plane - meters/NAD83 - Washington South]
Definition=EPSG:32149

[US State Plane - meters/NAD83 - West Virginia North]
Definition=EPSG:32150

[US State Plane - meters/NAD83 - West Virginia South]
Definition=EPSG:32151

[US State Plane - meters/NAD83 - Wisconsin Central]
Definition=EPSG:32153

[US State Plane - meters/NAD83 - Wisconsin North]
Definition=EPSG:32152

[US State Plane - meters/NAD83 - Wisconsin South]
Definition=EPSG:32154

[US State Plane - meters/NAD83 - Wyoming East]
Definition=EPSG:32155

[US State Plane - meters/NAD83 - Wyoming East Central]
Definition=EPSG:32156

[US State Plane - meters/NAD83 - Wyoming West]
Definition=EPSG:32158

[US State Plane - meters/NAD83 - Wyoming West Central]
Definition=EPSG:32157

[US State Plane - survey feet]
Base=EPSG:4269
Ellipsoid=GRS 1980
Transformation=None
Unit=U.S. Survey Feet

[US State Plane - survey feet/NAD83 - Arkansas North]
Definition=EPSG:3433

[US State Plane - survey feet/NAD83 - Arkansas South]
Definition=EPSG:3434

[US State Plane - survey feet/NAD83 - California zone 1]
Definition=EPSG:2225

[US State Plane - survey feet/NAD83 - California zone 2]
Definition=EPSG:2226

[US State Plane - survey feet/NAD83 - California zone 3]
Definition=EPSG:2227

[US State Plane - survey feet/NAD83 - California zone 4]
Definition=EPSG:2228

[US State Plane - survey feet/NAD83 - California zone 5]
Definition=EPSG:2229

[US State Plane - survey feet/NAD83 - California zone 6]
Definition=EPSG:2230

[US State Plane - survey feet/NAD83 - Colorado Central]
Definition=EPSG:2232

[US State Plane - survey feet/NAD83 - Colorado North]
Definition=EPSG:2231

[US State Plane - survey feet/NAD83 - Colorado South]
Definition=EPSG:2233

[US State Plane - survey feet/NAD83 - Connecticut]
Definition=EPSG:2234

[US State Plane - survey feet/NAD83 - Delaware]
Definition=EPSG:2235

[US State Plane - survey feet/NAD83 - Florida East]
Definition=EPSG:2236

[US State Plane - survey feet/NAD83 - Florida North]
Definition=EPSG:2238

[US State Plane - survey feet/NAD83 - Florida West]
Definition=EPSG:2237

[US State Plane - survey feet/NAD83 - Georgia East]
Definition=EPSG:2239

[US State Plane - survey feet/NAD83 - Georgia West]
Definition=EPSG:2240

[US State Plane - survey feet/NAD83 - Hawaii zone 3]
Definition=EPSG:3759

[US State Plane - survey feet/NAD83 - Idaho Central]
Definition=EPSG:2242

[US State Plane - survey feet/NAD83 - Idaho East]
Definition=EPSG:2241

[US State Plane - survey feet/NAD83 - Idaho West]
Definition=EPSG:2243

[US State Plane - survey feet/NAD83 - Illinois East]
Definition=EPSG:3435

[US State Plane - survey feet/NAD83 - Illinois West]
Definition=EPSG:3436

[US State Plane - survey feet/NAD83 - Indiana East]
Definition=EPSG:2965

[US State Plane - survey feet/NAD83 - Indiana West]
Definition=EPSG:2966

[US State Plane - survey feet/NAD83 - Iowa North]
Definition=EPSG:3417

[US State Plane - survey feet/NAD83 - Iowa South]
Definition=EPSG:3418

[US State Plane - survey feet/NAD83 - Kansas North]
Definition=EPSG:3419

[US State Plane - survey feet/NAD83 - Kansas South]
Definition=EPSG:3420

[US State Plane - survey feet/NAD83 - Kentucky North]
Definition=EPSG:2246

[US State Plane - survey feet/NAD83 - Kentucky Single Zone]
Definition=EPSG:3089

[US State Plane - survey feet/NAD83 - Kentucky South]
Definition=EPSG:2247

[US State Plane - survey feet/NAD83 - Louisiana North]
Definition=EPSG:3451

[US State Plane - survey feet/NAD83 - Louisiana Offshore]
Definition=EPSG:3453

[US State Plane - survey feet/NAD83 - Louisiana South]
Definition=EPSG:3452

[US State Plane - survey feet/NAD83 - Maine East]
Definition=EPSG:26847

[US State Plane - survey feet/NAD83 - Maine West]
Definition=EPSG:26848

[US State Plane - survey feet/NAD83 - Maryland]
Definition=EPSG:2248

[US State Plane - survey feet/NAD83 - Massachusetts Island]
Definition=EPSG:2250

[US State Plane - survey feet/NAD83 - Massachusetts Mainland]
Definition=EPSG:2249

[US State Plane - survey feet/NAD83 - Minnesota Central]
Definition=EPSG:26850

[US State Plane - survey feet/NAD83 - Minnesota North]
Definition=EPSG:26849

[US State Plane - survey feet/NAD83 - Minnesota South]
Definition=EPSG:26851

[US State Plane - survey feet/NAD83 - Mississippi East]
Definition=EPSG:2254

[US State Plane - survey feet/NAD83 - Mississippi West]
Definition=EPSG:2255

[US State Plane - survey feet/NAD83 - Nebraska]
Definition=EPSG:26852

[US State Plane - survey feet/NAD83 - Nevada Central]
Definition=EPSG:3422

[US State Plane - survey feet/NAD83 - Nevada East]
Definition=EPSG:3421

[US State Plane - survey feet/NAD83 - Nevada West]
Definition=EPSG:3423

[US State Plane - survey feet/NAD83 - New Hampshire]
Definition=EPSG:3437

[US State Plane - survey feet/NAD83 - New Jersey]
Definition=EPSG:3424

[US State Plane - survey feet/NAD83 - New Mexico Central]
Definition=EPSG:2258

[US State Plane - survey feet/NAD83 - New Mexico East]
Definition=EPSG:2257

[US State Plane - survey feet/NAD83 - New Mexico West]
Definition=EPSG:2259

[US State Plane - survey feet/NAD83 - New York Central]
Definition=EPSG:2261

[US State Plane - survey feet/NAD83 - New York East]
Definition=EPSG:2260

[US State Plane - survey feet/NAD83 - New York Long Island]
Definition=EPSG:2263

[US State Plane - survey feet/NAD83 - New York West]
Definition=EPSG:2262

[US State Plane - survey feet/NAD83 - North Carolina]
Definition=EPSG:2264

[US State Plane - survey feet/NAD83 - Ohio North]
Definition=EPSG:3734

[US State Plane - survey feet/NAD83 - Ohio South]
Definition=EPSG:3735

[US State Plane - survey feet/NAD83 - Oklahoma North]
Definition=EPSG:2267

[US State Plane - survey feet/NAD83 - Oklahoma South]
Definition=EPSG:2268

[US State Plane - survey feet/NAD83 - Pennsylvania North]
Definition=EPSG:2271

[US State Plane - survey feet/NAD83 - Pennsylvania South]
Definition=EPSG:2272

[US State Plane - survey feet/NAD83 - Rhode Island]
Definition=EPSG:3438

[US State Plane - survey feet/NAD83 - South Dakota North]
Definition=EPSG:4457

[US State Plane - survey feet/NAD83 - South Dakota South]
Definition=EPSG:3455

[US State Plane - survey feet/NAD83 - Tennessee]
Definition=EPSG:2274

[US State Plane - survey feet/NAD83 - Texas Central]
Definition=EPSG:2277

[US State Plane - survey feet/NAD83 - Texas North]
Definition=EPSG:2275

[US State Plane - survey feet/NAD83 - Texas North Central]
Definition=EPSG:2276

[US State Plane - survey feet/NAD83 - Texas South]
Definition=EPSG:2279

[US State Plane - survey feet/NAD83 - Texas South Central]
Definition=EPSG:2278

[US State Plane - survey feet/NAD83 - Utah Central]
Definition=EPSG:3566

[US State Plane - survey feet/NAD83 - Utah North]
Definition=EPSG:3560

[US State Plane - survey feet/NAD83 - Utah South]
Definition=EPSG:3567

[US State Plane - survey feet/NAD83 - Vermont]
Definition=EPSG:5646

[US State Plane - survey feet/NAD83 - Virginia North]
Definition=EPSG:2283

[US State Plane - survey feet/NAD83 - Virginia South]
Definition=EPSG:2284

[US State Plane - survey feet/NAD83 - Washington North]
Definition=EPSG:2285

[US State Plane - survey feet/NAD83 - Washington South]
Definition=EPSG:2286

[US State Plane - survey feet/NAD83 - West Virginia North]
Definition=EPSG:26853

[US State Plane - survey feet/NAD83 - West Virginia South]
Definition=EPSG:26854

[US State Plane - survey feet/NAD83 - Wisconsin Central]
Definition=EPSG:2288

[US State Plane - survey feet/NAD83 - Wisconsin North]
Definition=EPSG:2287

[US State Plane - survey feet/NAD83 - Wisconsin South]
Definition=EPSG:2289

[US State Plane - survey feet/NAD83 - Wyoming East]
Definition=EPSG:3736

[US State Plane - survey feet/NAD83 - Wyoming East Central]
Definition=EPSG:3737

[US State Plane - survey feet/NAD83 - Wyoming West]
Definition=EPSG:3739

[US State Plane - survey feet/NAD83 - Wyoming West Central]
Definition=EPSG:3738

[US State Plane - international feet]
Base=EPSG:4269
Ellipsoid=GRS 1980
Transformation=None
Unit=International Feet

[US State Plane - international feet/NAD83 - Arizona Central]
Definition=EPSG:2223

[US State Plane - international feet/NAD83 - Arizona East]
Definition=EPSG:2222

[US State Plane - international feet/NAD83 - Arizona West]
Definition=EPSG:2224

[US State Plane - international feet/NAD83 - Michigan Central]
Definition=EPSG:2252

[US State Plane - international feet/NAD83 - Michigan North]
Definition=EPSG:2251

[US State Plane - international feet/NAD83 - Michigan South]
Definition=EPSG:2253

[US State Plane - international feet/NAD83 - Montana]
Definition=EPSG:2256

[US State Plane - international feet/NAD83 - North Dakota North]
Definition=EPSG:2265

[US State Plane - international feet/NAD83 - North Dakota South]
Definition=EPSG:2266

[US State Plane - international feet/NAD83 - Oregon North]
Definition=EPSG:2269

[US State Plane - international feet/NAD83 - Oregon South]
Definition=EPSG:2270

[US State Plane - international feet/NAD83 - South Carolina]
Definition=EPSG:2273

[US State Plane - international feet/NAD83 - Utah Central]
Definition=EPSG:2281

[US State Plane - international feet/NAD83 - Utah North]
Definition=EPSG:2280

[US State Plane - international feet/NAD83 - Utah South]
Definition=EPSG:2282
