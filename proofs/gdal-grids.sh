# Grids written by other programs are read as they meant them: GTX, DSBB, BYN and NTv2 files made by gdal_translate give
# what GDAL and PROJ interpolate from the same nodes, to 0.1 mm. ORV_GRIDS names a folder with rdtrans2018.gsb and
# rdcorr2018.gsb, published by NSGI; without it the shift files are passed over, and the line says so.
set -euo pipefail
shopt -s lastpipe  # figures are gathered at the ends of pipes
. cmake/build.sh
need_packages "${base_packages[@]}" gdal-bin
build_preset release orvcfg ORVCoordSys
orvcfg=$PWD/build/release/bin/orvcfg
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
published=$PWD/tests/grids/nlgeo2018.gtx
cd "$work"
export LC_ALL=C
ours() { "$orvcfg" -q --system "$work/i/system" geoid "$@"; }
"$orvcfg" -q init "$work/i" >init.out
line="gdal-grids:"

# agree NAME UNIT LIMIT: the largest difference of the columns 1 and 2 of the standard input
agree() {
    awk -v limit="$3" '{ d = $1 - $2; if (d < 0) d = -d; if (d > worst) worst = d; n++ }
        END { printf "%d values to %.2g", n, worst; exit !(n > 0 && worst <= limit) }' >agree.out ||
        { echo "gdal-grids: $1 differs by more than $3 $2: $(cat agree.out)"; exit 1; }
    line="$line $1 $(cat agree.out) $2;"
}

# Whole tenths of millimetres, so that the form with whole numbers holds the same nodes.
gdal_translate -q -of GTX -ot Float32 "$published" g.gtx
gdal_translate -q -of GSBG g.gtx nlgeo04.grd
gdal_translate -q -of BYN -ot Int32 -scale 0 100 0 1000000 -a_scale 0.0001 g.gtx g.byn 2>byn.err
# gdal_translate leaves the kind of values at 0, where 1 means undulations, and writes nodes big-endian, unlike the agency.
perl -0777 -pi -e 'substr($_, 22, 1) = "\1"; $_ = substr($_, 0, 80) . pack("V*", unpack("N*", substr($_, 80)))' g.byn
rm -f -- *.aux.xml
ours add g.gtx nlgeo04.grd >add.out
ours add --model 23 g.byn >>add.out

# GDAL's own bilinear heights, at the middles of cells of another size; smaller ones, or it takes means.
gdalwarp -q -r bilinear -et 0 -te 4 52 4.5 52.4 -ts 61 97 -of GTiff g.gtx warped.tif
gdal_translate -q -of XYZ warped.tif gdal.xyz
awk '{ print $2, $1 }' gdal.xyz >positions
awk '{ print $1, $2, 0, 0 }' gdal.xyz | cct -d 9 +proj=vgridshift +grids="$work/g.gtx" +multiplier=1 | awk '{ print $3 }' >proj
for form in gtx byn; do
    model=28
    [ $form = byn ] && model=23
    ours eval --decimals 7 --model $model --file g.$form <positions | awk '{ print $3 }' >$form.out
    paste $form.out proj | agree "$form against PROJ" m 0.0001
    paste $form.out <(awk '{ print $3 }' gdal.xyz) | agree "$form against GDAL" m 0.0001
done
# The model of this form takes 4 x 4 nodes, so the two agree at the nodes only; a hair beside them, since a rounding
# error before a column is known to take the next one.
gdal_translate -q -of XYZ -srcwin 20 20 200 200 nlgeo04.grd nodes.xyz
awk '{ printf "%.9f %.9f\n", $2 + 1e-7, $1 + 1e-7 }' nodes.xyz | ours eval --decimals 7 --model 4 | awk '{ print $3 }' >dsbb.out
paste dsbb.out <(awk '{ print $3 }' nodes.xyz) | agree "dsbb on its nodes" m 0.0001

if [ -z "${ORV_GRIDS:-}" ]; then
    echo "$line shift files passed over, ORV_GRIDS names no folder"
    exit 0
fi
for name in rdtrans2018 rdcorr2018; do
    cp "$ORV_GRIDS/$name.gsb" .
    gdal_translate -q -of NTv2 "NTv2:0:$name.gsb" "w$name.gsb"
    gdal_translate -q -of NTv2 -co APPEND_SUBDATASET=YES "NTv2:1:$name.gsb" "w$name.gsb"
    rm -f -- *.aux.xml
    ours add "$name.gsb" "w$name.gsb" >>add.out
    # Inside the second grid, away from its edge.
    awk 'BEGIN { srand(18); for (i = 0; i < 5000; i++) printf "%.9f %.9f\n", 50.05 + rand() * 3.9, 2.6 + rand() * 5.3 }' >p
    awk '{ print $2, $1, 0, 0 }' p >p.proj
    for file in "$name" "w$name"; do
        for way in forward inverse; do
            [ $way = inverse ] && options=--inverse || options=
            # 1e-9 degrees are 0.1 mm
            ours shift $options --apply --decimals 12 --model 29 --file "$file.gsb" <p >"$way.out"
            cct -d 12 ${options:+-I} +proj=hgridshift +grids="$work/$file.gsb" <p.proj >"$way.proj"
            paste -d' ' "$way.out" "$way.proj" | awk '{ print $3, $6; print $4, $5 }' |
                agree "$file $way against PROJ" degrees 0.0000000009
        done
        awk '{ print $3, $4 }' forward.out | ours shift --inverse --apply --decimals 12 --model 29 --file "$file.gsb" |
            paste -d' ' p - | awk '{ print $1, $5; print $2, $6 }' | agree "$file round trip" degrees 0.0000000009
    done
done
echo "${line%;}"
