// The view onto the scene: camera, controls by mouse, touch and keyboard, and the names.
(function () {
  'use strict';

  const report = window.velmornReport;

  const kFieldOfView = 36; // degrees, along the height
  const kMargin = 1.12;
  const kTurn = 5 * Math.PI / 180; // per key
  const kMove = 0.05;              // per key, of the distance
  const kZoom = 1.12;              // per key
  const kLeastPolar = 0.001;       // radians from straight above
  const kNameOffset = 10;          // pixels above the camera

  // On paper; the style sheet has the same shape.
  const kPaperWidth = 680;
  const kPaperShape = 1.75;
  const kPaperPixels = 2; // per pixel of the style sheet

  // Degrees around the upright axis from the view's z, and above the ground.
  report.looks = {
    start: {around: 28, above: 28},
    above: {around: 0, above: 89.9},
    side: {around: 0, above: 4}
  };

  function directionOf(look) {
    const around = look.around * Math.PI / 180, above = look.above * Math.PI / 180;
    return new THREE.Vector3(
        Math.sin(around) * Math.cos(above), Math.sin(above), Math.cos(around) * Math.cos(above));
  }

  function middle(values) { return (Math.min(...values) + Math.max(...values)) / 2; }

  // Places the camera so that all points are in the picture.
  function fit(camera, target, points, look) {
    const towards = directionOf(look);
    const right = new THREE.Vector3(0, 1, 0).cross(towards).normalize();
    const up = towards.clone().cross(right);
    const axes = [right, up, towards];
    const along = axes.map((axis) => points.map((point) => point.dot(axis)));
    const centre = along.map(middle);
    target.set(0, 0, 0);
    axes.forEach((axis, i) => target.addScaledVector(axis, centre[i]));
    const tangent = Math.tan(camera.fov * Math.PI / 360);
    let distance = 0;
    points.forEach((point, i) => {
      const across = Math.abs(along[0][i] - centre[0]) / (tangent * camera.aspect);
      const upwards = Math.abs(along[1][i] - centre[1]) / tangent;
      const nearer = along[2][i] - centre[2];
      distance = Math.max(distance, kMargin * Math.max(across, upwards) + nearer);
    });
    camera.position.copy(target).addScaledVector(towards, distance);
    camera.near = distance / 500;
    camera.far = distance * 50;
    camera.updateProjectionMatrix();
  }

  function nameElement(stage, spot) {
    const element = document.createElement('div');
    const text = document.createElement('span');
    text.textContent = spot.text;
    element.className = spot.colour === undefined ? 'axis' : 'name camera-' + spot.colour;
    element.appendChild(text);
    stage.appendChild(element);
    return {spot: spot, element: element, width: element.offsetWidth, height: element.offsetHeight};
  }

  // The place in the stage in pixels; nothing behind the camera.
  function onStage(place, camera, size) {
    const point = place.clone().project(camera);
    if (point.z > 1 || point.z < -1) return null;
    return {x: (point.x + 1) / 2 * size.x, y: (1 - point.y) / 2 * size.y};
  }

  // From top to bottom; a name that would lie on another one moves below it.
  function placeNames(names, camera, size) {
    const taken = [];
    const shown = names.map((name) => ({name: name, at: onStage(name.spot.place, camera, size)}));
    shown.sort((a, b) => (a.at ? a.at.y : 0) - (b.at ? b.at.y : 0));
    for (const {name, at} of shown) {
      name.element.style.visibility = at ? '' : 'hidden';
      if (!at) continue;
      const isName = name.spot.colour !== undefined;
      let top = at.y - (isName ? name.height + kNameOffset : name.height / 2);
      const left = at.x - name.width / 2;
      const covers = (other) => left < other.left + other.width && other.left < left + name.width &&
          top < other.top + other.height && other.top < top + name.height;
      for (let other = taken.find(covers); isName && other; other = taken.find(covers))
        top = other.top + other.height + 1;
      if (isName) taken.push({left: left, top: top, width: name.width, height: name.height});
      // Parts of the stage, so that names keep their places on paper.
      name.element.style.left = 100 * left / size.x + '%';
      name.element.style.top = 100 * top / size.y + '%';
    }
  }

  function turn(camera, target, around, over) {
    const offset = camera.position.clone().sub(target);
    const spherical = new THREE.Spherical().setFromVector3(offset);
    spherical.theta += around;
    spherical.phi =
        Math.min(Math.PI - kLeastPolar, Math.max(kLeastPolar, spherical.phi + over));
    camera.position.copy(target).add(offset.setFromSpherical(spherical));
  }

  function move(camera, target, across, upwards) {
    const step = kMove * camera.position.distanceTo(target);
    const offset = new THREE.Vector3();
    offset.addScaledVector(new THREE.Vector3().setFromMatrixColumn(camera.matrix, 0), across * step);
    offset.addScaledVector(new THREE.Vector3().setFromMatrixColumn(camera.matrix, 1), upwards * step);
    camera.position.add(offset);
    target.add(offset);
  }

  function zoom(camera, target, factor) {
    camera.position.sub(target).multiplyScalar(factor).add(target);
  }

  // What a key does; nothing for other keys.
  function keyAction(event, camera, target, reset) {
    const arrows = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1]};
    const arrow = arrows[event.key];
    if (arrow && event.shiftKey) return () => move(camera, target, arrow[0], arrow[1]);
    if (arrow) return () => turn(camera, target, arrow[0] * kTurn, -arrow[1] * kTurn);
    if (event.key === '+' || event.key === '=') return () => zoom(camera, target, 1 / kZoom);
    if (event.key === '-') return () => zoom(camera, target, kZoom);
    if (event.key === '0' || event.key === 'Home') return reset;
    return null;
  }

  // Throws when the browser has no WebGL.
  function rendererFor(canvas) {
    const wanted = {antialias: true, preserveDrawingBuffer: true};
    const context = canvas.getContext('webgl', wanted);
    if (!context) throw new Error('the browser offers no WebGL');
    return new THREE.WebGLRenderer({canvas: canvas, context: context});
  }

  report.View = function (stage, built) {
    const canvas = document.createElement('canvas');
    const renderer = rendererFor(canvas);
    canvas.tabIndex = 0;
    canvas.setAttribute('role', 'img');
    canvas.setAttribute('aria-label', 'The rig in three dimensions: ' +
        built.names.map((spot) => spot.text).join(', '));
    stage.appendChild(canvas);
    const camera = new THREE.PerspectiveCamera(kFieldOfView, 1);
    const controls = new THREE.OrbitControls(camera, canvas);
    const size = new THREE.Vector2(1, 1);
    const names = built.names.map((spot) => nameElement(stage, spot));
    const axisNames = built.axisNames.map((spot) => nameElement(stage, spot));
    let look = report.looks.start;
    let isMoved = false;

    const render = () => {
      renderer.setClearColor(report.surfaceColour('panel'));
      renderer.render(built.scene, camera);
      placeNames(names.concat(axisNames), camera, size);
    };
    const lookFrom = (wanted) => {
      look = wanted;
      isMoved = false;
      fit(camera, controls.target, built.fitPoints, look);
      controls.update();
      render();
    };
    const setSize = (width, height) => {
      size.set(width, height);
      camera.aspect = width / height;
      camera.updateProjectionMatrix();
      renderer.setPixelRatio(report.isOnPaper ? kPaperPixels : window.devicePixelRatio);
      renderer.setSize(width, height, false);
      if (isMoved) render();
      else lookFrom(look);
    };
    const resize = () => {
      if (stage.clientWidth > 0 && !report.isOnPaper)
        setSize(stage.clientWidth, stage.clientHeight);
    };

    // The page scrolls over the view until it is clicked or has the focus.
    controls.enableZoom = false;
    controls.enableKeys = false;
    canvas.addEventListener('focus', () => { controls.enableZoom = true; });
    canvas.addEventListener('blur', () => { controls.enableZoom = false; });
    canvas.addEventListener('mousedown', () => canvas.focus({preventScroll: true}));
    canvas.addEventListener('touchstart', () => { controls.enableZoom = true; }, {passive: true});
    controls.addEventListener('start', () => { isMoved = true; });
    controls.addEventListener('change', render);
    canvas.addEventListener('keydown', (event) => {
      if (event.ctrlKey || event.altKey || event.metaKey) return;
      const action =
          keyAction(event, camera, controls.target, () => lookFrom(report.looks.start));
      if (!action) return;
      event.preventDefault();
      isMoved = true;
      action();
      controls.update();
      render();
    });
    new ResizeObserver(resize).observe(stage);
    resize();

    this.render = render;
    this.resize = resize;
    // What WebGL draws while a page is printed comes too late for it; a copy does not.
    const paper = document.createElement('canvas');
    paper.className = 'on-paper';
    stage.appendChild(paper);
    this.drawPaper = () => {
      setSize(kPaperWidth, kPaperWidth / kPaperShape);
      paper.width = canvas.width;
      paper.height = canvas.height;
      paper.getContext('2d').drawImage(canvas, 0, 0);
    };
    this.lookFrom = lookFrom;
    this.canvas = canvas;
    this.showNames = (isShown) => names.forEach((name) => { name.element.hidden = !isShown; });
    this.showAxisNames =
        (isShown) => axisNames.forEach((name) => { name.element.hidden = !isShown; });
  };
})();
