//Maya ASCII 2012 scene
//Name: shapes.ma
//Last modified: Sun, Jan 20, 2013 10:15:00 AM
//Codeset: UTF-8
requires maya "2012";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "product" "Maya 2012";
fileInfo "osv" "Linux \"x86_64\"";
createNode transform -s -n "persp";
	setAttr ".v" no;
	setAttr ".t" -type "double3" 12 9 -4.5 ;
	setAttr ".r" -type "double3" -27.5 405 0 ;
createNode camera -s -n "perspShape" -p "persp";
	setAttr -k off ".v" no;
	setAttr ".fl" 34.999999999999993;
	setAttr ".coi" 15.5;
	setAttr ".imn" -type "string" "persp";
	setAttr ".den" -type "string" "persp_depth";
	setAttr ".man" -type "string" "persp_mask";
	setAttr ".hc" -type "string" "viewSet -p %camera";
createNode transform -s -n "top";
	setAttr ".v" no;
	setAttr ".t" -type "double3" 0 100.1 0 ;
	setAttr ".r" -type "double3" -89.999999999999986 0 0 ;
createNode camera -s -n "topShape" -p "top";
	setAttr -k off ".v" no;
	setAttr ".rnd" no;
	setAttr ".o" yes;
createNode transform -n "house";
	addAttr -ci true -sn "hgt" -ln "height" -nn "Height" -min 0 -max 10 -smx 5 -at "double";
	addAttr -ci true -sn "kind" -ln "kind" -min 0 -max 5 -en "Wood:Stone=4:Glass" -at "enum";
	addAttr -ci true -h true -sn "notes" -ln "notes" -dt "string";
	addAttr -ci true -uac -sn "paint" -ln "paint" -at "float3" -nc 3;
	addAttr -ci true -sn "paintR" -ln "paintR" -at "float" -p "paint";
	addAttr -ci true -sn "paintG" -ln "paintG" -at "float" -p "paint";
	addAttr -ci true -sn "paintB" -ln "paintB" -at "float" -p "paint";
	addAttr -ci true -m -im false -sn "lnk" -ln "links" -at "message";
	addAttr -s false -ci true -sn "tmp" -ln "temporary" -at "long";
	setAttr -l on -k off ".v";
	setAttr ".t" -type "double3" 1 0 -2 ;
	setAttr -av ".ty" 3;
	setAttr -l on ".tz";
	setAttr ".ro" 3;
	setAttr -l on ".s" -type "double3" 2 2 2 ;
	setAttr ".rp" -type "double3" 0 0.5 0 ;
	setAttr -cb on ".rx";
	setAttr -k on ".hgt" 4.25;
	setAttr -k on ".kind" 5;
	setAttr ".notes" -type "string" "two\nlines, a \"quote\" and a back\\slash";
	setAttr ".paint" -type "float3" 0.25 0.5 1 ;
	setAttr ".tmp" 7;
	setAttr ".aal" -type "attributeAlias" {"tall","height","side","translateX"} ;
createNode mesh -n "houseShape" -p "house";
	setAttr -k off ".v";
	setAttr -s 2 ".iog[0].og";
	setAttr ".iog[0].og[0].gcl" -type "componentList" 1 "f[0:1]";
	setAttr ".iog[0].og[3].gcl" -type "componentList" 2 "f[2]" "f[4:5]";
	setAttr ".vir" yes;
	setAttr ".vif" yes;
	setAttr ".uvst[0].uvsn" -type "string" "map1";
	setAttr -s 14 ".uvst[0].uvsp[0:13]" -type "float2" 0.375 0 0.625 0 0.375
		 0.25 0.625 0.25 0.375 0.5 0.625 0.5 0.375 0.75 0.625 0.75 0.375 1 0.625 1 0.875 0
		 0.875 0.25 0.125 0 0.125 0.25;
	setAttr ".cuvs" -type "string" "map1";
	setAttr ".clst[0].clsn" -type "string" "colorSet1";
	setAttr -s 4 ".clst[0].clsp[0:3]"  1 0 0 1 0 1 0 1 0 0 1 0.5 0.25 0.25 0.25 1;
	setAttr ".ccls" -type "string" "colorSet1";
	setAttr ".dcc" -type "string" "Ambient+Diffuse";
	setAttr ".covm[0]"  0 1 1;
	setAttr ".cdvm[0]"  0 1 1;
	setAttr -s 2 ".pt";
	setAttr ".pt[1]" -type "float3" 0 0.125 0 ;
	setAttr ".pt[6]" -type "float3" 0.5 0 0 ;
	setAttr -s 8 ".vt[0:7]"  -0.5 -0.5 0.5 0.5 -0.5 0.5 -0.5 0.5 0.5 0.5 0.5 0.5
		 -0.5 0.5 -0.5 0.5 0.5 -0.5 -0.5 -0.5 -0.5 0.5 -0.5 -0.5;
	setAttr -s 12 ".ed[0:11]"  0 1 0 2 3 0 4 5 1 6 7 1 0 2 0 1 3 0 2 4 1
		 3 5 1 4 6 1 5 7 1 6 0 1 7 1 1;
	setAttr -s 6 ".fc[0:5]" -type "polyFaces" 
		f 4 0 5 -2 -5
		mu 0 4 0 1 3 2
		mc 0 4 0 1 3 2
		f 4 1 7 -3 -7
		mu 0 4 2 3 5 4
		mc 0 4 2 3 -1 -1
		f 4 2 9 -4 -9
		mu 0 4 4 5 7 6
		f 4 3 11 -1 -11
		mu 0 4 6 7 9 8
		f 4 -12 -10 -8 -6
		mu 0 4 1 10 11 3
		f 4 10 4 6 8
		mu 0 4 12 0 2 13;
	setAttr ".cd" -type "dataPolyComponent" Index_Data Edge 0 ;
	setAttr ".cvd" -type "dataPolyComponent" Index_Data Vertex 0 ;
	setAttr ".hfd" -type "dataPolyComponent" Index_Data Face 0 ;
createNode transform -n "second";
	setAttr ".t" -type "double3" 5 0 0 ;
createNode transform -n "wire";
createNode nurbsCurve -n "wireShape" -p "wire";
	setAttr -k off ".v";
	setAttr ".cc" -type "nurbsCurve" 
		3 1 0 no 3
		6 0 0 0 1 1 1
		4
		0 0 0
		1 2 0
		3 2 0
		4 0 0.1
		;
createNode transform -n "sheet" -p "second";
createNode nurbsSurface -n "sheetShape" -p "sheet";
	setAttr -k off ".v";
	setAttr ".cc" -type "nurbsSurface" 
		1 1 0 0 no 
		2 0 1
		2 0 1
		
		4
		-0.5 0 0.5
		-0.5 0 -0.5
		0.5 0 0.5
		0.5 0.75 -0.5
		
		;
createNode transform -n "dust";
createNode particle -n "dustShape" -p "dust";
	setAttr ".pos0" -type "vectorArray" 2 0 1 2 3 4 5.5 ;
	setAttr ".id0" -type "doubleArray" 2 0 1 ;
createNode animCurveTL -n "house_translateX";
	setAttr ".tan" 9;
	setAttr ".wgt" no;
	setAttr -s 3 ".ktv[0:2]"  1 0 12 5 24 -1.5;
	setAttr -s 3 ".kit[0:2]"  1 9 1;
createNode lambert -n "plaster";
	setAttr ".c" -type "float3" 0.75 0.5 0.25 ;
createNode shadingEngine -n "plasterSG";
	setAttr ".ihi" 0;
	setAttr -s 2 ".dsm";
	setAttr ".ro" yes;
createNode materialInfo -n "materialInfo1";
createNode groupId -n "groupId1";
	setAttr ".ihi" 0;
select -ne :time1;
	setAttr ".o" 12;
	setAttr ".unw" 12;
select -ne :renderPartition;
	setAttr -s 3 ".st";
select -ne :initialShadingGroup;
	setAttr ".ro" yes;
select -ne :defaultRenderGlobals;
	setAttr ".ren" -type "string" "mayaSoftware";
	setAttr ".fs" 1;
parent -s -nc -r -add "|house|houseShape" "second" ;
connectAttr "house_translateX.o" "house.tx" -l on;
connectAttr "groupId1.id" "|house|houseShape.iog.og[3].gid";
connectAttr "plasterSG.mwc" "|house|houseShape.iog.og[3].gco";
connectAttr "wire.msg" "house.lnk" -na;
connectAttr "second.msg" "house.lnk" -na;
connectAttr "plaster.oc" "plasterSG.ss";
connectAttr "|house|houseShape.iog.og[3]" "plasterSG.dsm" -na;
connectAttr "|second|houseShape.iog" "plasterSG.dsm" -na;
connectAttr "groupId1.msg" "plasterSG.gn" -na;
connectAttr "plasterSG.msg" "materialInfo1.sg";
connectAttr "plaster.msg" "materialInfo1.m";
connectAttr "plasterSG.pa" ":renderPartition.st" -na;
connectAttr "plaster.msg" ":defaultShaderList1.s" -na;
connectAttr "sheetShape.iog" ":initialShadingGroup.dsm" -na;
// End of shapes.ma
