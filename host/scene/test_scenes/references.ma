//Maya ASCII 2016 scene
file -rdi 1 -ns "tree" -rfn "treeRN" -op "v=0;" -typ "mayaAscii" "scenes/tree.ma";
file -r -ns "tree" -dr 1 -rfn "treeRN" -op "v=0;" -typ "mayaAscii" "scenes/tree.ma";
requires maya "2016";
currentUnit -l centimeter -a degree -t film;
createNode transform -n "ground";
createNode reference -n "treeRN";
	setAttr ".ed" -type "dataReferenceEdits" 
		"treeRN"
		"treeRN" 0
		"treeRN" 2
		2 "|tree:trunk" "translate" " -type \"double3\" 1 2 3"
		2 "|tree:trunk" "rotateY" " 45";
	setAttr ".ptag" -type "string" "";
createNode reference -n "sharedReferenceNode";
	setAttr ".ed" -type "dataReferenceEdits" 
		"sharedReferenceNode";
connectAttr "treeRN.msg" "sharedReferenceNode.foo" -na;
// End of references.ma
